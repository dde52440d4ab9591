// Characters. macOS has their classes in a table that its headers read; here it contains those of ASCII. What
// takes a locale ignores it: the tests stay in that of C.

#include <cctype>
#include <clocale>
#include <cstdlib>
#include <cwchar>
#include <runetype.h>
#include <string_view>
#include <xlocale.h>

namespace {

constexpr unsigned typesOf(char character) {
    constexpr std::string_view spaces = "\t\n\v\f\r ";
    const auto isBetween = [character](char first, char last) {
        return character >= first && character <= last;
    };
    unsigned types = 0;
    if (isBetween('a', 'z')) types |= _CTYPE_A | _CTYPE_L;
    if (isBetween('A', 'Z')) types |= _CTYPE_A | _CTYPE_U;
    if (isBetween('0', '9')) types |= _CTYPE_D;
    if (isBetween('0', '9') || isBetween('a', 'f') || isBetween('A', 'F')) types |= _CTYPE_X;
    if (spaces.find(character) != std::string_view::npos) types |= _CTYPE_S;
    if (character == ' ' || character == '\t') types |= _CTYPE_B;
    if (isBetween('!', '~') && (types & (_CTYPE_A | _CTYPE_D)) == 0) types |= _CTYPE_P;
    if (isBetween('!', '~')) types |= _CTYPE_G;
    types |= isBetween(' ', '~') ? _CTYPE_R : _CTYPE_C;
    return types;
}

constexpr _RuneLocale asciiTable() {
    _RuneLocale table{};
    for (int code = 0; code < 128; ++code) {
        const auto character = static_cast<char>(code);
        const unsigned types = typesOf(character);
        table.__runetype[code] = types;
        table.__maplower[code] = (types & _CTYPE_U) != 0 ? code - 'A' + 'a' : code;
        table.__mapupper[code] = (types & _CTYPE_L) != 0 ? code - 'a' + 'A' : code;
    }
    return table;
}

bool isInTable(int code) { return code >= 0 && code < 128; }

} // namespace

extern "C" {

constinit _RuneLocale _DefaultRuneLocale = asciiTable();

int __maskrune(int code, unsigned long mask) {
    return isInTable(code) ? static_cast<int>(_DefaultRuneLocale.__runetype[code] & mask) : 0;
}

int __tolower(int code) { return isInTable(code) ? _DefaultRuneLocale.__maplower[code] : code; }

int __toupper(int code) { return isInTable(code) ? _DefaultRuneLocale.__mapupper[code] : code; }

int __maskrune_l(int code, unsigned long mask, locale_t /*locale*/) { return __maskrune(code, mask); }

int ___tolower_l(int code, locale_t /*locale*/) { return __tolower(code); }

int ___toupper_l(int code, locale_t /*locale*/) { return __toupper(code); }

int ___mb_cur_max_l(locale_t /*locale*/) { return 1; }

lconv* localeconv_l(locale_t /*locale*/) { return std::localeconv(); }

wint_t btowc_l(int byte, locale_t /*locale*/) { return std::btowc(byte); }

int wctob_l(wint_t character, locale_t /*locale*/) { return std::wctob(character); }

size_t mbrlen_l(const char* text, size_t size, mbstate_t* state, locale_t /*locale*/) {
    return std::mbrlen(text, size, state);
}

int mbtowc_l(wchar_t* character, const char* text, size_t size, locale_t /*locale*/) {
    return std::mbtowc(character, text, size);
}

size_t mbrtowc_l(wchar_t* character, const char* text, size_t size, mbstate_t* state, locale_t /*locale*/) {
    return std::mbrtowc(character, text, size, state);
}

size_t wcrtomb_l(char* text, wchar_t character, mbstate_t* state, locale_t /*locale*/) {
    return std::wcrtomb(text, character, state);
}

size_t mbsrtowcs_l(wchar_t* wide, const char** text, size_t length, mbstate_t* state, locale_t /*locale*/) {
    return std::mbsrtowcs(wide, text, length, state);
}

size_t mbsnrtowcs_l(wchar_t* wide, const char** text, size_t size, size_t length, mbstate_t* state,
                    locale_t /*locale*/) {
    return mbsnrtowcs(wide, text, size, length, state);
}

size_t wcsnrtombs_l(char* text, const wchar_t** wide, size_t length, size_t size, mbstate_t* state,
                    locale_t /*locale*/) {
    return wcsnrtombs(text, wide, length, size, state);
}

} // extern "C"
