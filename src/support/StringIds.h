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

    // The warning that the web server gives out the page history.
    HistoryOpenTitle = 22200,
    HistoryOpenText = 22201,

    // What an Edit is refused with, the first-run note about CMS data, and
    // the status bar's word on a save.
    LogonRefusedAtEdit = 22220,
    PageNotOnServer = 22221,
    NoCMSFileOnce = 22222,
    NoCMSFileTitle = 22223,
    SavedStatus = 22224,
    SavedWithoutRevisionStatus = 22225,
    NotSavedStatus = 22226,
    SaveCancelledStatus = 22227,

    // Tooltips of the band and the address row.
    EditTip = 22228,
    UndoTip = 22229,
    RedoTip = 22230,
    AdminTip = 22231,
    VisibilityTip = 22232,
    FontTip = 22233,
    RecoverTip = 22234,
    SiteViewTip = 22235,
    SaveTip = 22236,
    BackTip = 22237,
    ForwardTip = 22238,
    GoTip = 22239,

    // The certificate of a site's FTP server (CertificateTrust).
    CertificateQuestion = 22300,
    CertificateQuestionTitle = 22301,
    CertificateNotTrusted = 22302,
    CertificateChanged = 22303,
    TlsNotOffered = 22304,
    // The host key of a site's SFTP server (HostKeyTrust).
    HostKeyQuestion = 22305,
    HostKeyQuestionTitle = 22306,
    HostKeyNotTrusted = 22307,
    HostKeyChanged = 22308,
    SftpChoice = 22309, // the settings dialog's choice of SFTP
    // A key file that logs on to an SFTP server.
    SshKeyFile = 22310,
    SshKeyBrowse = 22311,
    SshKeyTip = 22312,
    SshKeyPassphrase = 22313,
    SshKeyPassphraseTitle = 22314,
    SshKeyUnreadable = 22315,
    SshKeyChooseTitle = 22316,
};
} // namespace StringIds
