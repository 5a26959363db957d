// The process-wide switch between the locale in force and the machine's
// locale, which decides the decimal mark of all number text printed and
// parsed by the library.
#include <tessar/format.h>

#include <clocale>
#include <cstdlib>
#include <cstring>

namespace {

// The one slot of the remembered locale name: a second switch overwrites it,
// so switches do not nest. The C library may reuse the text that a locale
// query returns at the next change of locale, so the slot keeps a copy of
// it. Null until the first switch.
char *rememberedLocale = nullptr;

void remember(const char *name)
{
    std::free(rememberedLocale);
    rememberedLocale = nullptr;
    if (name == nullptr) return;
    const std::size_t size = std::strlen(name) + 1;
    rememberedLocale = static_cast<char *>(std::malloc(size));
    if (rememberedLocale != nullptr) std::memcpy(rememberedLocale, name, size);
}

}  // namespace

char *tsFormat_HonorMachineLocale(void)
{
    remember(std::setlocale(LC_ALL, nullptr));
    return std::setlocale(LC_ALL, "");
}

// Before any switch the name is null, and the call only queries.
char *tsFormat_RestoreDefaultLocale(void)
{
    return std::setlocale(LC_ALL, rememberedLocale);
}
