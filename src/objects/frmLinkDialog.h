#pragma once

#include <QDialog>
#include <QList>
#include <QStringList>

class CDocEventHandler;
class QComboBox;
class QGroupBox;
class QLineEdit;
class QPushButton;
class QRadioButton;
class QVBoxLayout;

// The address, target, tooltip and event scripts of a link. The caller
// loads it, fills it through Init and the Set operations, shows it, and
// reads it through the Get operations: an empty address means Cancel.
class frmLinkDialog : public QDialog
{
    Q_OBJECT

public:
    // The extra attributes of the advanced part, in the order of its rows.
    static const QStringList &ExtraProperties();

    explicit frmLinkDialog(QWidget *parent = nullptr);

    // The caption tells a new link from one opened with a referrer.
    long Init(CDocEventHandler *CDocEventHandler_p, long lReferrer_p = 0);
    // The page the link goes into: a page of the site picked with Browse
    // is written relative to it.
    void SetPageAddress(const QString &strPageURL_p) { m_strPageURL = strPageURL_p; }
    // The two frame options are offered only on a page with frames.
    void EnableFrameOptions(bool boolEnable_p);

    long SetURL(const QString &strURL_p);
    long GetURL(QString &strURL_p) const;
    // 0 a new window, 1 this window as a new page, 2 this frame, 3 the
    // frame named.
    long SetTarget(long lIndex_p, const QString &strFrameName = QString());
    // "_new", "_top", "_self" or the frame's name.
    long GetTarget(QString &strTarget_p) const;
    long TargetIndex() const;
    void SetAlt(const QString &strAlt_p);
    QString GetAlt() const;
    // By the name of ExtraProperties().
    void SetExtraProperty(const QString &strName_p, const QString &strValue_p);
    QString GetExtraProperty(const QString &strName_p) const;

    // A page of the site picked from its tree, as a link from the page
    // given: empty when nothing was picked.
    static QString PickSitePage(QWidget *parent, const QString &strPageURL_p);

    // Runs the dialog modally: 1 OK with an address, -1 cancelled.
    long Show();

private:
    void BuildAddress(QVBoxLayout *column);
    void BuildTarget(QVBoxLayout *column);
    void BuildAdvanced(QVBoxLayout *column);
    void optLinkMode_Click();
    void FillFrameNames();
    void cmdOpenSajtDialog_Click();
    void cmdShowAdvanced_Click();
    void cmdCopyScript_Click();
    void cmdHelpSelFunc_Click();
    void cmdOK_Click();
    void cmdCancel_Click();
    int ChosenEvent() const;

    CDocEventHandler *m_DocEventHandler = nullptr;
    QString m_strPageURL;
    bool m_boolFramesRead = false;
    QLineEdit *txtURL = nullptr;
    QList<QRadioButton *> optLinkMode;
    QComboBox *cmbFrameName = nullptr;
    QLineEdit *txtAlt = nullptr;
    QPushButton *cmdShowAdvanced = nullptr;
    QGroupBox *fraAdvanced = nullptr;
    QList<QRadioButton *> OptExtraProp;
    QList<QLineEdit *> txtExtraProperty;
    QComboBox *cboScriptFuncs = nullptr;
};
