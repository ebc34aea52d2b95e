#pragma once

#include "transfer/CFTPS.h"

#include <QString>

#include <functional>

// Activation of one site record: the proof, on the live servers, that its
// HTTP address and FTP account are one site, with the search for its index
// file, its web root and the transfer mode that works. The options come
// from the record itself, which the settings dialog keeps up to date as the
// user types (usesubindex, useremotef, remotefolder, automode,
// passivemode); the results go into it. The caller stores the record.
class SiteActivation
{
public:
    enum Result : long {
        Activated = 1,
        Failed = 0,          // the pending error says why
        NotFound = -1,       // no index file; the user has been told
        Ended = -2,          // the user ended the run at the resume question
        Cancelled = -3       // the user has been told
    };

    explicit SiteActivation(long lIndex_p);

    // The automatic activation. Steps report their progress here.
    std::function<void(const QString &)> onProgress;
    long Run();
    // The user's word for it: the record is active without a test.
    static long Manual(long lIndex_p);
    // From the Cancel button, while Run is under way.
    void Cancel();
    bool IsChange() const { return m_boolChanged; }

    // An address as the record keeps it: scheme and host in lower case
    // (paths on a server may tell case apart), the scheme given when none
    // is, no blanks around it.
    static QString NormalisedAddress(const QString &strAddress_p, const QString &strScheme_p);

    long IsValidUrl(const QString &strURL, bool &bValid);
    long CheckFTP_Rights(const QString &strFolder);

private:
    long Steps(int &step);
    long Prepare(SiteRecord &site);
    long LogOn(SiteRecord &site);
    long SearchIndex(SiteRecord &site);
    long Translate(int step);
    void Progress(long id, const QString &detail = QString());
    SiteRecord &Record();

    long m_lIndex;
    CFTPS m_CFTPS;
    bool m_boolChanged = false;
    bool m_boolStop = false;
    bool m_boolAgain = false;
};
