#include "argument_text.h"

namespace convert {
namespace {

bool IsHighSurrogate(char32_t unit) {
    return unit >= 0xD800 && unit <= 0xDBFF;
}
bool IsLowSurrogate(char32_t unit) {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

void AppendCodePoint(std::string& text, char32_t point) {
    const auto byte = [&](char32_t bits) { text.push_back(static_cast<char>(bits)); };
    if (point < 0x80) {
        byte(point);
    } else if (point < 0x800) {
        byte(0xC0 | point >> 6);
        byte(0x80 | (point & 0x3F));
    } else if (point < 0x10000) {
        byte(0xE0 | point >> 12);
        byte(0x80 | (point >> 6 & 0x3F));
        byte(0x80 | (point & 0x3F));
    } else {
        byte(0xF0 | point >> 18);
        byte(0x80 | (point >> 12 & 0x3F));
        byte(0x80 | (point >> 6 & 0x3F));
        byte(0x80 | (point & 0x3F));
    }
}

void AppendUtf16(std::wstring& name, char32_t point) {
    if (point < 0x10000) {
        name.push_back(static_cast<wchar_t>(point));
    } else {
        point -= 0x10000;
        name.push_back(static_cast<wchar_t>(0xD800 | point >> 10));
        name.push_back(static_cast<wchar_t>(0xDC00 | (point & 0x3FF)));
    }
}

} // namespace

std::string ArgumentText(std::wstring_view argument) {
    std::string text;
    for (std::size_t i = 0; i < argument.size(); ++i) {
        char32_t point = static_cast<char16_t>(argument[i]);
        if (IsHighSurrogate(point) && i + 1 < argument.size() &&
            IsLowSurrogate(static_cast<char16_t>(argument[i + 1]))) {
            point = 0x10000 + ((point - 0xD800) << 10) + (argument[++i] - 0xDC00);
        }
        AppendCodePoint(text, point);
    }
    return text;
}

// The text is what ArgumentText made, split by the parser at ASCII characters only.
std::filesystem::path ArgumentPath(std::string_view text) {
    std::wstring name;
    for (std::size_t i = 0; i < text.size();) {
        const auto lead = static_cast<unsigned char>(text[i]);
        const std::size_t length = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
        char32_t point = length == 1 ? lead : lead & (0x7F >> length);
        for (std::size_t k = 1; k < length && i + k < text.size(); ++k) {
            point = point << 6 | (static_cast<unsigned char>(text[i + k]) & 0x3F);
        }
        AppendUtf16(name, point);
        i += length;
    }
    return name;
}

} // namespace convert
