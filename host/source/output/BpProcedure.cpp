#include "BpProcedure.h"

#include "HostSession.h"
#include "output/BpProcedureImpl.h"
#include "output/SessionChartData.h"

void BpProcedure::Impl::setOutput(std::unique_ptr<rapidjson::Document> document, host::ChartDataMap charts) {
    host::HostSession::instance().setOutputDocument(std::move(document));
    host::setSessionChartData(std::move(charts));
    outputHandedOver = true;
}

BpProcedure::BpProcedure(const std::string& title, int kind) : impl_(std::make_unique<Impl>()) {
    impl_->title = title;
    impl_->kind = kind;
}

BpProcedure::~BpProcedure() = default;

std::string BpProcedure::GetTitle() const { return impl_->title; }
int BpProcedure::GetKind() const { return impl_->kind; }
BpProcedure::Impl& BpProcedure::impl() { return *impl_; }
