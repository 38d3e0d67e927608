#pragma once
#include <memory>
#include <string>

#include <rapidjson/document.h>

// Builds one procedure's output document: tables and charts in the order added.
class StatJSONGenerator {
public:
    StatJSONGenerator(const std::string& procedureName, const std::string& subtitle);
    StatJSONGenerator(const StatJSONGenerator&) = delete;
    StatJSONGenerator& operator=(const StatJSONGenerator&) = delete;
    virtual ~StatJSONGenerator();

    rapidjson::Document& getProcedureStatJSON();
    std::string getProcedureName() const;

    struct Impl;
    Impl& impl();

private:
    std::unique_ptr<Impl> impl_;
};
