#pragma once

#include <QString>

#include <vector>

struct CMSUSER;

// What a user name and a password must be for the CMS file to keep them
// and for a client to find its user by them. The file stores each text in
// the Western Windows code page, one byte a character, so anything outside
// it would come back as '?', and two users would silently share a name.
class CMSNameRules
{
public:
    // The first character of the text the file can't hold: one outside the
    // code page, or a control character (a tab or a line break can't be
    // typed back at the receiving client). Null when the text is fit.
    static QChar UnfitCharacter(const QString &strText_p);

    // The message for a user that can't be stored as typed, empty when he
    // can: an unfit character, or a name another user has already (names
    // compare exactly, as the client compares them). lSkip_p is the index
    // of the user being edited, -1 for a new one.
    static QString Refusal(const QString &strName_p, const QString &strPassword_p,
                           const std::vector<CMSUSER> &aUsers_p, long lSkip_p);
};
