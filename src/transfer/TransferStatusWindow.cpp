#include "transfer/TransferStatusWindow.h"

namespace {
TransferStatusWindow::Factory &factory()
{
    static TransferStatusWindow::Factory installed;
    return installed;
}
} // namespace

void TransferStatusWindow::InstallFactory(Factory newFactory)
{
    factory() = std::move(newFactory);
}

std::unique_ptr<TransferStatusWindow> TransferStatusWindow::Create()
{
    return factory() ? factory()() : nullptr;
}
