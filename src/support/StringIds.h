#pragma once

// Numbers of the string table (src/resources/strings.tsv) that the code of
// this folder and the main window's captions use by name.
namespace StringIds {
enum : long {
    ProgramName = 1,
    GoButton = 9100,
    HelpBase = 30000,

    // The error dialog, its signature box and the thanks after a report.
    FtpTimedOut = 40376,
    FtpServerDown = 40377,
    ErrorDialogTitle = 40378,
    ErrorExplanation = 40379,
    ErrorMessageLabel = 40380,
    AddSignatureLink = 40381,
    SendErrorInfo = 40382,
    ShowMessageLink = 40383,
    SendReportButton = 40384,
    DoNotSendButton = 40385,
    CloseButton = 40386,
    ProblemExplanation = 40387,
    ProblemTitle = 40388,
    SignatureTitle = 40389,
    SignatureExplanation = 40390,
    ThankYouMessage = 40391,
    ThankYouTitle = 40392,
    OkButton = 40393,
};
} // namespace StringIds
