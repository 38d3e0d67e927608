#pragma once
#include <memory>
#include <string>

// The string table: translations of a procedure's visible texts, keyed by the
// English text. A key with no translation is returned unchanged.
class FacSTDictionary {
public:
    explicit FacSTDictionary(const std::string& resourceLocation);
    FacSTDictionary(const FacSTDictionary&) = delete;
    FacSTDictionary& operator=(const FacSTDictionary&) = delete;
    virtual ~FacSTDictionary();

    void SetProcedure(const std::string& procedureTitle);
    std::string LookUp(const std::string& key) const;

    struct Impl;

private:
    std::unique_ptr<Impl> impl_;
};
