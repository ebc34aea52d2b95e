#pragma once

#include <memory>
#include <vector>

class FtpSession;

// Keeps the connections that clients open during one action of the user
// (a save, a copy in the site tree) alive until the action ends, so that
// clients made one after another for the same site, each for a moment, log
// on once between them. Scopes nest; the connections go when the outermost
// one ends and no client holds them any more.
class TransferActionScope
{
public:
    TransferActionScope();
    ~TransferActionScope();
    TransferActionScope(const TransferActionScope &) = delete;
    TransferActionScope &operator=(const TransferActionScope &) = delete;

    // Called when a session is published: kept if a scope is open.
    static void Keep(const std::shared_ptr<FtpSession> &session);

private:
    static int &Depth();
    static std::vector<std::shared_ptr<FtpSession>> &Kept();
};
