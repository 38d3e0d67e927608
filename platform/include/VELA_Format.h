#pragma once

// A display format: type, width and decimals.
struct VELA_Format {
    enum FormatType {
        FormatString = 1,   // "A": text
        FormatNumeric = 5   // "F": fixed-point number
    };

    VELA_Format(int formatType, int formatWidth, int formatDecimals)
        : type(static_cast<FormatType>(formatType)), width(formatWidth), decimals(formatDecimals) {}

    FormatType type;
    int width;
    int decimals;
};
