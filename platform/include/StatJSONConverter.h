#pragma once
#include <rapidjson/document.h>

class BpProcedure;
class OPSCommonOutput;

// Hands a finished output document to the procedure frame.
class StatJSONConverter {
public:
    explicit StatJSONConverter(BpProcedure& procedure);
    StatJSONConverter(const StatJSONConverter&) = delete;
    StatJSONConverter& operator=(const StatJSONConverter&) = delete;
    virtual ~StatJSONConverter();

    void setCommonOutput(OPSCommonOutput* common) { common_ = common; }
    OPSCommonOutput* getCommonOutput() const { return common_; }

    // Takes the document's content; the document is left empty.
    void generateOutput(rapidjson::Document& document);

private:
    BpProcedure& procedure_;
    OPSCommonOutput* common_ = nullptr;
};
