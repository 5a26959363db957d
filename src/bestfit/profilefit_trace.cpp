// The debug trace of the vertical profile fit: the parameters, the envelope
// and the IPs after every step, written to a file of fixed name.
#include <cctype>
#include <cmath>
#include <cstdarg>
#include <cstdint>
#include <cstdio>

#include "bestfit/profilefit.hpp"

namespace tessar::detail::profilefit {

namespace {

// The trace's name is a drive path of the library's first platform.
constexpr const char *kTracePath = "C:\\BestFit_Vertical_Debug.txt";

bool hasDriveLetter(const char *path)
{
    return std::isalpha(static_cast<unsigned char>(path[0])) && path[1] == ':';
}

// Drive letters do not exist here, so a drive path names no reachable file
// and its open fails like any other failed open. Handed to fopen as it
// stands, it would instead create a file of that odd name in the working
// directory.
std::FILE *openFile(const char *path, const char *mode)
{
    if (hasDriveLetter(path)) return nullptr;
    return std::fopen(path, mode);
}

// The K value the trace shows for an interior IP: its length per percent of
// change of grade between the chords (short chords taken as 0.0001), or
// 10000.0 where the grade hardly changes.
double traceKValue(const IpSet &ips, std::int32_t i)
{
    auto grade = [&](std::int32_t a, std::int32_t b) {
        double h = ips.station[b] - ips.station[a];
        if (std::fabs(h) < kShortestChord) h = kShortestChord;
        return (ips.level[b] - ips.level[a]) / h;
    };
    const double changeOfGrade = std::fabs((grade(i, i + 1) - grade(i - 1, i)) * 100);
    return changeOfGrade >= 0.0001 ? ips.curveLength[i] / changeOfGrade : 10000.0;
}

}  // namespace

void openTrace(FitState &fit)
{
    fit.trace = openFile(kTracePath, "w");
    if (fit.trace == nullptr) {
        // The stored setting itself goes off: later runs stay quiet until
        // the next initialisation.
        fit.parameters.debug = 0;
        return;
    }
    const Parameters &p = fit.parameters;
    trace(fit, "UPTol(minOffset): %.3f LOTol(minOffset): %.3f \n", p.upTol, p.loTol);
    trace(fit, "Hog  (maxRadius): %.3f Sag (maxRad/2.0): %.3f \n", p.hogK, p.sagK);
    trace(fit, "VCMinimumLength (maxOffset): %.3f \n", p.vcMinimumLength);
    trace(fit, "COG Filter Val (PCPTRadius): %.3f \n", p.cogFilter);
}

void closeTrace(FitState &fit)
{
    if (fit.trace == nullptr) return;
    std::fclose(fit.trace);
    // Cleared so that a later release does not close the dead stream again.
    fit.trace = nullptr;
}

void trace(const FitState &fit, const char *format, ...)
{
    if (fit.trace == nullptr) return;
    std::va_list values;
    va_start(values, format);
    std::vfprintf(fit.trace, format, values);
    va_end(values);
}

void traceIps(const FitState &fit, const char *title)
{
    if (fit.trace == nullptr) return;
    if (title[0] != '\0') trace(fit, "%s\n", title);
    const IpSet &ips = fit.ips;
    for (std::int32_t i = 1; i <= ips.count; ++i) {
        const double kValue = i == 1 || i == ips.count ? 0.0 : traceKValue(ips, i);
        trace(fit, "\t\tIP Number: %d\tChainage: %.4f\tLevel: %.4f\tVCLength: %.4f\tVCKVal: %.4f\n", i,
              ips.station[i], ips.level[i], ips.curveLength[i], kValue);
    }
}

}  // namespace tessar::detail::profilefit
