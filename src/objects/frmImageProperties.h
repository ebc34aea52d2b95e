#pragma once

#include "objects/frmImgProperties.h"

#include <QDialog>

class CHTMLImg;
class QCheckBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QSlider;
class QTabWidget;

// The picture dialog for a picture of the site or of the user's disk: what
// the file is, its size in the page, a scaled or compressed copy, and its
// attributes. A scaled or compressed copy is a new file of the program's
// (the original stays as it is) that the page shows from then on and that
// goes up at Save under its own new name.
class frmImageProperties : public QDialog
{
    Q_OBJECT

public:
    explicit frmImageProperties(QWidget *parent = nullptr);

    // 1; 0 when the picture's file can't be read (the error is pending).
    long Init(CHTMLImg *image);
    // 1 when the picture was changed (by OK, a scaling or a compression),
    // -1 when nothing was.
    long Show();

private:
    QWidget *BuildGeneral();
    QWidget *BuildSize();
    QWidget *BuildCompress();
    void ShowFile();
    void txtHoriz_Change();
    void txtVerti_Change();
    void EnableScale();
    void txtQuality_Change();
    void cmdPreview_Click();
    void cmdViewPreview_Click();
    void cmdScale_Click();
    void cmdCompress_Click();
    void cmdOk_Click();
    QString GetNewFileName(const QString &strSuffix_p) const;
    void Report(const QString &text);

    CHTMLImg *m_Image = nullptr;
    QString m_strSource;   // the picture's file on this disk
    long m_lWidth = 0;     // the file's size in pixels
    long m_lHeight = 0;
    int m_nShownWidth = 0; // the picture's size in the page when opened
    int m_nShownHeight = 0;
    bool m_boolChanged = false;
    bool m_boolSizing = false;
    QString m_strPreview;

    QTabWidget *TabStrip1 = nullptr;
    QLabel *lblNamn = nullptr;
    QLabel *lblTyp = nullptr;
    QLabel *lblURL = nullptr;
    QLabel *lblStorlek = nullptr;
    QLabel *lblFormat = nullptr;
    QLineEdit *txtHoriz = nullptr;
    QLineEdit *txtVerti = nullptr;
    QCheckBox *chkProp = nullptr;
    QPushButton *cmdScale = nullptr;
    QLabel *lblOriginal = nullptr;
    QLabel *lblSize = nullptr;
    QLabel *lblGifNote = nullptr;
    QLineEdit *txtQuality = nullptr;
    QSlider *Slider2 = nullptr;
    QPushButton *cmdPreview = nullptr;
    QLabel *lblNewSize = nullptr;
    QPushButton *cmdViewPreview = nullptr;
    QPushButton *cmdCompress = nullptr;
    frmImgProperties::Fields m_misc;
};
