#pragma once
#include <memory>
#include <string>

// The procedure frame: one per run. It receives the run's output document.
class BpProcedure {
public:
    BpProcedure(const std::string& title, int kind);
    BpProcedure(const BpProcedure&) = delete;
    BpProcedure& operator=(const BpProcedure&) = delete;
    ~BpProcedure();

    std::string GetTitle() const;
    int GetKind() const;

    struct Impl;
    Impl& impl();

private:
    std::unique_ptr<Impl> impl_;
};
