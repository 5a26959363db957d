// Geoid undulations from gridded model files, read on demand.
//
// The library keeps one model open at a time: the file descriptor, the
// header of the grid and a flag that the model is valid. Values are never
// cached: each one is fetched with its own seeks and read, so memory use
// stays constant whatever the size of the grid.
#include <tessar/geoid.h>

#include <array>
#include <cmath>
#include <cstdint>
#include <new>
#include <string>
#include <string_view>

#include <fcntl.h>
#include <unistd.h>

namespace {

// The header of a grid, with the north and east edges derived from it. The
// defaults are the closed state: every double 1.0, one row and one column,
// and a kind of 0, which no usable file has.
struct GridHeader {
    double south = 1.0;
    double west = 1.0;
    double latSpacing = 1.0;
    double lonSpacing = 1.0;
    std::int32_t rows = 1;
    std::int32_t columns = 1;
    std::int32_t kind = 0;
    double north = 1.0;
    double east = 1.0;
};

struct Model {
    int fd = -1;
    std::int32_t valid = 0;
    GridHeader header;
    // The buffer every value is read into. A short read (a file cut short)
    // leaves it as it was, so the caller gets the last value read.
    float value = 0.0f;
};

// The one library-wide model, closed at load.
constinit Model model{};

constexpr double kHalf = 0.5;

// ---- File access ----

// Reads one field at the current position. A short read leaves the field's
// old value in place: short reads are not reported.
template <class T> void readField(int fd, T &field)
{
    T buffer;
    if (::read(fd, &buffer, sizeof buffer) == static_cast<ssize_t>(sizeof buffer)) field = buffer;
}

// Reads the header from the start of the file into h and derives north and east.
void readHeader(int fd, GridHeader &h)
{
    ::lseek(fd, 0, SEEK_SET);
    readField(fd, h.south);
    readField(fd, h.west);
    readField(fd, h.latSpacing);
    readField(fd, h.lonSpacing);
    readField(fd, h.rows);
    readField(fd, h.columns);
    readField(fd, h.kind);
    h.north = h.south + static_cast<double>(static_cast<std::int64_t>(h.rows) - 1) * h.latSpacing;
    h.east = h.west + static_cast<double>(static_cast<std::int64_t>(h.columns) - 1) * h.lonSpacing;
}

// The stored value at row r and column c, both counted from 1, at offset
// 40 + 4 ((r - 1) columns + c). Each read seeks to the start of the file
// first and then on to the value.
double readValue(std::int32_t row, std::int32_t column)
{
    const std::int64_t offset =
        40 + 4 * ((static_cast<std::int64_t>(row) - 1) * model.header.columns + column);
    ::lseek(model.fd, 0, SEEK_SET);
    ::lseek(model.fd, static_cast<off_t>(offset), SEEK_CUR);
    readField(model.fd, model.value);
    return static_cast<double>(model.value);
}

// Closes the file if one is open and brings the model back to its closed
// state. Returns the close status, or 1 when no file was open.
std::int32_t closeModel()
{
    std::int32_t status = 1;
    if (model.fd >= 0) status = ::close(model.fd);
    model = Model{};
    return status;
}

// Opens path and reads its header into the model. True when the file opened
// and its kind is non-zero; the file then stays open, the model not yet
// marked valid. On false the model is closed.
bool openGrid(const char *path)
{
    closeModel();
    const int fd = ::open(path, O_RDONLY | O_CLOEXEC);
    if (fd < 0) return false;
    model.fd = fd;
    readHeader(fd, model.header);
    if (model.header.kind == 0) {
        closeModel();
        return false;
    }
    return true;
}

// ---- The point ----

// Applies the longitude sense and rejects points off the globe. A sense of 0
// counts longitudes positive to the west; negative longitudes are then
// brought to 0 up to 360.
bool normalisePoint(double latitude, double &longitude, std::int32_t sense)
{
    if (sense == 0) longitude = 360.0 - longitude;
    if (longitude < 0.0) longitude += 360.0;
    if (latitude < -90.0 || latitude > 90.0) return false;
    if (std::fabs(longitude) > 360.0) return false;
    return true;
}

// Edges included.
bool insideGrid(const GridHeader &h, double latitude, double longitude)
{
    return h.south <= latitude && latitude <= h.north && h.west <= longitude && longitude <= h.east;
}

// How well a grid holds a point: 3 interior, 2 within half a spacing of one
// edge, 1 within half a spacing of two edges (a corner), 0 outside.
std::int32_t scorePoint(const GridHeader &h, double latitude, double longitude)
{
    if (!insideGrid(h, latitude, longitude)) return 0;
    // The south band is looked at only outside the north band, the west band
    // only outside the east band.
    const bool latitudeBand = std::fabs(h.north - latitude) <= h.latSpacing * kHalf ||
                              std::fabs(latitude - h.south) <= h.latSpacing * kHalf;
    const bool longitudeBand = std::fabs(h.east - longitude) <= h.lonSpacing * kHalf ||
                               std::fabs(longitude - h.west) <= h.lonSpacing * kHalf;
    if (latitudeBand && longitudeBand) return 1;
    if (latitudeBand || longitudeBand) return 2;
    return 3;
}

// ---- Interpolation ----

// The quadratic through f0, f1, f2 at t = 0, 1, 2, in Newton's form.
double quadraticFit(double t, double f0, double f1, double f2)
{
    return ((f2 - f1 - (f1 - f0)) * (t - 1.0) * 0.5 + (f1 - f0)) * t + f0;
}

// The cell index of a coordinate: the truncated offset from the first node
// in spacings. A degenerate header (zero spacing) can make the quotient not a
// number; it then counts as cell 0 instead of overflowing the conversion.
std::int32_t cellIndex(double offsetInSpacings)
{
    if (!(offsetInSpacings >= 0.0 && offsetInSpacings < 2147483647.0)) return 0;
    return static_cast<std::int32_t>(offsetInSpacings);
}

// The centre (from 1) of the 3-node block for cell index i: the node north
// of the cell's lower node, moved inward so that the block stays on the grid
// at the first and last rows or columns.
std::int32_t blockCentre(std::int32_t cell, std::int32_t count)
{
    std::int32_t centre = cell == 0 ? 2 : cell + 1;
    if (centre == count) centre = count - 1;
    return centre;
}

double interpolate(double latitude, double longitude)
{
    const GridHeader &h = model.header;
    const std::int32_t i = cellIndex((latitude - h.south) / h.latSpacing);
    const std::int32_t j = cellIndex((longitude - h.west) / h.lonSpacing);

    // Exactly on a node: the stored value, widened.
    if (latitude == h.south + i * h.latSpacing && longitude == h.west + j * h.lonSpacing)
        return readValue(i + 1, j + 1);

    const std::int32_t r = blockCentre(i, h.rows);
    const std::int32_t c = blockCentre(j, h.columns);
    // Block coordinates: 0 at the block's first row or column, 1 at its centre.
    const double x = (latitude - (h.south + (r - 2) * h.latSpacing)) / h.latSpacing;
    const double y = (longitude - (h.west + (c - 2) * h.lonSpacing)) / h.lonSpacing;

    // Each of the three rows, south to north, is fitted along the longitude,
    // then the three results along the latitude.
    std::array<double, 3> alongRow{};
    for (std::int32_t k = 0; k < 3; ++k) {
        const double f0 = readValue(r - 1 + k, c - 1);
        const double f1 = readValue(r - 1 + k, c);
        const double f2 = readValue(r - 1 + k, c + 1);
        alongRow[k] = quadraticFit(y, f0, f1, f2);
    }
    return quadraticFit(x, alongRow[0], alongRow[1], alongRow[2]);
}

// ---- Grid families ----

struct Candidates {
    std::string_view letter;  // "u0", "a0", "h0" or "p0"
    std::int32_t first;
    std::int32_t last;
};

struct Family {
    std::int32_t model;
    std::string_view base;
    std::array<Candidates, 4> groups;
    std::size_t groupCount;
};

// The families in the order their candidates are searched.
constexpr std::array<Family, 4> kFamilies{{
    {2, "g2003", {{{"u0", 1, 8}}}, 1},
    {3, "s2003", {{{"u0", 1, 8}}}, 1},
    {4, "g1999", {{{"u0", 1, 8}, {"a0", 1, 4}, {"h0", 1, 1}, {"p0", 1, 1}}}, 4},
    {5, "s1999", {{{"u0", 1, 8}}}, 1},
}};

const Family *findFamily(std::int32_t number)
{
    for (const Family &family : kFamilies)
        if (family.model == number) return &family;
    return nullptr;
}

// The name "%s%s%d.bin": the directory (with a trailing '/' added unless it
// is empty or has one) and the base name, the letter with its "0", the number.
std::string candidateName(std::string_view directory, std::string_view base, std::string_view letter,
                          std::int32_t number)
{
    std::string name(directory);
    if (!name.empty() && name.back() != '/') name += '/';
    name += base;
    name += letter;
    name += std::to_string(number);
    name += ".bin";
    return name;
}

struct Choice {
    const Candidates *group = nullptr;
    std::int32_t number = 0;
};

// Scores every candidate in order; the first interior file ends the search,
// otherwise the first edge file beats the first corner file.
Choice chooseCandidate(const Family &family, std::string_view directory, double latitude, double longitude)
{
    Choice edge;
    Choice corner;
    for (std::size_t g = 0; g < family.groupCount; ++g) {
        const Candidates &group = family.groups[g];
        for (std::int32_t n = group.first; n <= group.last; ++n) {
            // Each candidate's header overwrites the model's; the one before is closed.
            const std::string name = candidateName(directory, family.base, group.letter, n);
            const std::int32_t score =
                openGrid(name.c_str()) ? scorePoint(model.header, latitude, longitude) : 0;
            closeModel();
            if (score == 3) return {&group, n};
            if (score == 2 && edge.group == nullptr) edge = {&group, n};
            if (score == 1 && corner.group == nullptr) corner = {&group, n};
        }
    }
    return edge.group != nullptr ? edge : corner;
}

}  // namespace

int32_t tsGeoid_initModelByFile(const char *path)
{
    closeModel();
    // An empty path opens nothing.
    if (path == nullptr || *path == '\0') return 1;
    if (!openGrid(path)) return 1;
    model.valid = 1;
    return 0;
}

int32_t tsGeoid_initModelByGeoid(int32_t modelNumber, const char *directory, double latitude,
                                 double longitude, int32_t longitudeSense)
{
    closeModel();
    const Family *family = findFamily(modelNumber);
    if (family == nullptr || directory == nullptr) return 1;
    if (!normalisePoint(latitude, longitude, longitudeSense)) return 1;
    try {
        const Choice choice = chooseCandidate(*family, directory, latitude, longitude);
        if (choice.group == nullptr) return 1;
        // The chosen file is named again and opened as the model.
        const std::string name = candidateName(directory, family->base, choice.group->letter, choice.number);
        if (!openGrid(name.c_str())) return 1;
    } catch (const std::bad_alloc &) {
        closeModel();
        return 1;
    }
    model.valid = 1;
    return 0;
}

int32_t tsGeoid_closeModel(void)
{
    return closeModel();
}

int32_t tsGeoid_getUndulationAtLatLong(double *undulation, double latitude, double longitude,
                                       int32_t longitudeSense)
{
    *undulation = 0.0;
    if (model.valid == 0) return 1;
    if (!normalisePoint(latitude, longitude, longitudeSense)) return 1;
    if (!insideGrid(model.header, latitude, longitude)) return 1;
    *undulation = interpolate(latitude, longitude);
    return 0;
}

double tsGeoid_biQuadraticFit(double t, double f0, double f1, double f2)
{
    return quadraticFit(t, f0, f1, f2);
}
