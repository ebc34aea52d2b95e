#include "transfer/TransferActionScope.h"

#include "transfer/FtpSession.h"

#include <algorithm>

TransferActionScope::TransferActionScope()
{
    ++Depth();
}

TransferActionScope::~TransferActionScope()
{
    if (--Depth() == 0)
        Kept().clear();
}

void TransferActionScope::Keep(const std::shared_ptr<FtpSession> &session)
{
    if (Depth() > 0 && std::find(Kept().begin(), Kept().end(), session) == Kept().end())
        Kept().push_back(session);
}

int &TransferActionScope::Depth()
{
    static int depth = 0;
    return depth;
}

std::vector<std::shared_ptr<FtpSession>> &TransferActionScope::Kept()
{
    static std::vector<std::shared_ptr<FtpSession>> kept;
    return kept;
}
