#pragma once

class VELA_DataSource;

typedef double OBS;

// One case of a data source, laid over a caller-owned buffer with one OBS per
// column. A text value of up to 8 bytes occupies one column.
class VELA_Case {
public:
    VELA_Case(const VELA_DataSource& source, OBS* buffer);

    // Blanks every column: system-missing numbers, spaces in text columns.
    void InitCase();
    void SetColumnValue(int column, const char* text, int length);
    void SetColumnValue(int column, double value);
    OBS* GetObsPointer() const { return buffer_; }
    const VELA_DataSource& GetDataSource() const { return source_; }

private:
    const VELA_DataSource& source_;
    OBS* buffer_;
};
