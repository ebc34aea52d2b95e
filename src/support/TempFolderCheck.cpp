#include "support/TempFolderCheck.h"

#include "support/MResources.h"

namespace {
// Pieces of the string table: "The temporary folder " <path> <what is
// wrong>, then on a line of its own what to do about it.
constexpr long kTheFolder = 22110;
constexpr long kOtherOwner = 22111;
constexpr long kLink = 22112;
constexpr long kNotFolder = 22113;
constexpr long kNotCreated = 22114;
constexpr long kNotPrivate = 22115;
constexpr long kRemoveIt = 22116;
constexpr long kCheckRights = 22117;
} // namespace

QString TempFolderCheck::Problem()
{
    return Message(LocalFolders::prepareTempFolder(), LocalFolders::namedTempFolder());
}

QString TempFolderCheck::Message(LocalFolders::TempState state, const QString &path)
{
    using TempState = LocalFolders::TempState;
    long wrong = 0;
    // Something that stands in the way can be removed; a folder we could not
    // make or narrow points at the rights of the folder above it.
    long advice = kRemoveIt;
    switch (state) {
    case TempState::Private: return QString();
    case TempState::OtherOwner: wrong = kOtherOwner; break;
    case TempState::Link: wrong = kLink; break;
    case TempState::NotFolder: wrong = kNotFolder; break;
    case TempState::NotCreated: wrong = kNotCreated; advice = kCheckRights; break;
    case TempState::NotPrivate: wrong = kNotPrivate; advice = kCheckRights; break;
    }
    return MResources::LoadResourceString(kTheFolder) + path + MResources::LoadResourceString(wrong)
           + QLatin1Char('\n') + MResources::LoadResourceString(advice);
}
