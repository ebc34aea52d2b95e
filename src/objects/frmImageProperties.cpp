#include "objects/frmImageProperties.h"

#include "document/CDocument.h"
#include "objects/CHTMLImg.h"
#include "objects/CImageManager.h"
#include "objects/ImageUpload.h"
#include "platform/LocalPictureScheme.h"
#include "support/OkCancelButtons.h"
#include "support/MError.h"
#include "support/MResources.h"
#include "support/UserQuestions.h"

#include <QCheckBox>
#include <QDateTime>
#include <QDialogButtonBox>
#include <QFileInfo>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QIntValidator>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSlider>
#include <QTabWidget>
#include <QVBoxLayout>

#include <cmath>

namespace {

enum Text : long { txtTitle = 17807, txtKeep = 17808, txtOriginal = 17809, txtCurrent = 17810, txtCompressed = 17813,
                   txtUnchanged = 17814, txtRescaled = 17815, txtGeneral = 17825, txtCompress = 17826,
                   txtMisc = 17827, txtUnknown = 17828, txtRescale = 17829, txtPreview = 17830, txtNewSize = 17831,
                   txtViewPreview = 17832, txtGif = 17839, txtAnimated = 17840, txtPixels = 17846,
                   txtPicture = 17849, txtSize = 17638 };

QString L(long id)
{
    return MResources::LoadResourceString(id);
}

// The kind of picture by its extension, as the General page names it.
QString TypeText(const QString &path)
{
    static const QList<std::pair<const char *, const char *>> kinds = {
        {"jpg", "JPEG"}, {"jpeg", "JPEG"}, {"bmp", "Bitmap"}, {"gif", "GIF"}, {"tif", "TIFF"}, {"png", "PNG"},
        {"wmf", "Windows Metafile"}, {"emf", "Enhanced Metafile"}, {"exif", "ExIF"}};
    const QString extension = QFileInfo(path).suffix().toLower();
    for (const auto &[suffix, name] : kinds)
        if (extension == QLatin1String(suffix))
            return QLatin1String(name) + L(txtPicture);
    return L(txtUnknown) + extension;
}

// Kilobytes of 1000 bytes, as the compression question counts them.
QString KbText(const QString &path)
{
    return QString::number(std::lround(double(QFileInfo(path).size()) / 1000.0)) + QStringLiteral(" kb");
}

QLabel *Label(QWidget *parent, const char *name)
{
    auto *label = new QLabel(parent);
    label->setObjectName(QLatin1String(name));
    return label;
}

} // namespace

frmImageProperties::frmImageProperties(QWidget *parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("frmImageProperties"));
    setWindowTitle(L(txtTitle));
    auto *layout = new QVBoxLayout(this);
    TabStrip1 = new QTabWidget(this);
    TabStrip1->setObjectName(QStringLiteral("TabStrip1"));
    TabStrip1->addTab(BuildGeneral(), L(txtGeneral));
    TabStrip1->addTab(BuildSize(), L(txtSize));
    TabStrip1->addTab(BuildCompress(), L(txtCompress));
    auto *misc = new QWidget(TabStrip1);
    m_misc = frmImgProperties::BuildFields(misc);
    TabStrip1->addTab(misc, L(txtMisc));
    layout->addWidget(TabStrip1);
    OkCancelButtons::Add(this, layout, [this] { cmdOk_Click(); });
}

QWidget *frmImageProperties::BuildGeneral()
{
    auto *page = new QWidget(this);
    auto *form = new QFormLayout(page);
    lblNamn = Label(page, "lblNamn");
    lblTyp = Label(page, "lblTyp");
    lblURL = Label(page, "lblURL");
    lblURL->setTextInteractionFlags(Qt::TextSelectableByMouse);
    lblStorlek = Label(page, "lblStorlek");
    lblFormat = Label(page, "lblFormat");
    for (QLabel *label : {lblNamn, lblTyp, lblURL, lblStorlek, lblFormat})
        form->addRow(label);
    return page;
}

QWidget *frmImageProperties::BuildSize()
{
    auto *page = new QWidget(this);
    auto *column = new QVBoxLayout(page);
    auto *boxes = new QHBoxLayout;
    txtHoriz = new QLineEdit(page);
    txtHoriz->setObjectName(QStringLiteral("txtHoriz"));
    txtVerti = new QLineEdit(page);
    txtVerti->setObjectName(QStringLiteral("txtVerti"));
    for (QLineEdit *box : {txtHoriz, txtVerti})
        box->setValidator(new QIntValidator(0, 100000, box));
    boxes->addWidget(txtHoriz);
    boxes->addWidget(new QLabel(QStringLiteral("x"), page));
    boxes->addWidget(txtVerti);
    boxes->addWidget(new QLabel(L(txtPixels), page));
    column->addLayout(boxes);
    chkProp = new QCheckBox(L(txtKeep), page);
    chkProp->setObjectName(QStringLiteral("chkProp"));
    chkProp->setChecked(true);
    column->addWidget(chkProp);
    lblOriginal = Label(page, "lblOriginal");
    lblSize = Label(page, "lblSize");
    lblGifNote = Label(page, "lblGifNote");
    lblGifNote->setWordWrap(true);
    column->addWidget(lblOriginal);
    column->addWidget(lblSize);
    column->addWidget(lblGifNote);
    cmdScale = new QPushButton(L(txtRescale), page);
    cmdScale->setObjectName(QStringLiteral("cmdScale"));
    column->addWidget(cmdScale);
    connect(txtHoriz, &QLineEdit::textEdited, this, &frmImageProperties::txtHoriz_Change);
    connect(txtVerti, &QLineEdit::textEdited, this, &frmImageProperties::txtVerti_Change);
    connect(cmdScale, &QPushButton::clicked, this, &frmImageProperties::cmdScale_Click);
    return page;
}

QWidget *frmImageProperties::BuildCompress()
{
    auto *page = new QWidget(this);
    auto *column = new QVBoxLayout(page);
    auto *row = new QHBoxLayout;
    txtQuality = new QLineEdit(QStringLiteral("75"), page);
    txtQuality->setObjectName(QStringLiteral("txtQuality"));
    txtQuality->setValidator(new QIntValidator(1, 100, txtQuality));
    Slider2 = new QSlider(Qt::Horizontal, page);
    Slider2->setObjectName(QStringLiteral("Slider2"));
    Slider2->setRange(1, 100);
    Slider2->setValue(75);
    row->addWidget(Slider2);
    row->addWidget(txtQuality);
    column->addLayout(row);
    cmdPreview = new QPushButton(L(txtPreview), page);
    cmdPreview->setObjectName(QStringLiteral("cmdPreview"));
    lblNewSize = Label(page, "lblNewSize");
    cmdViewPreview = new QPushButton(L(txtViewPreview), page);
    cmdViewPreview->setObjectName(QStringLiteral("cmdViewPreview"));
    cmdViewPreview->setVisible(false);
    cmdCompress = new QPushButton(L(txtCompress), page);
    cmdCompress->setObjectName(QStringLiteral("cmdCompress"));
    for (QWidget *widget : std::initializer_list<QWidget *>{cmdPreview, lblNewSize, cmdViewPreview, cmdCompress})
        column->addWidget(widget);
    connect(Slider2, &QSlider::valueChanged, this, [this](int value) {
        if (txtQuality->text() != QString::number(value))
            txtQuality->setText(QString::number(value));
    });
    connect(txtQuality, &QLineEdit::textEdited, this, &frmImageProperties::txtQuality_Change);
    connect(cmdPreview, &QPushButton::clicked, this, &frmImageProperties::cmdPreview_Click);
    connect(cmdViewPreview, &QPushButton::clicked, this, &frmImageProperties::cmdViewPreview_Click);
    connect(cmdCompress, &QPushButton::clicked, this, &frmImageProperties::cmdCompress_Click);
    return page;
}

// A picture on the server is worked on from a copy of its file; one of
// the disk from its own file.
long frmImageProperties::Init(CHTMLImg *image)
{
    m_Image = image;
    const HtmlElement img = image->Element();
    const QString src = img.getAttribute(QStringLiteral("src")).toString();
    m_strSource = LocalPictureScheme::PathOf(src);
    if (m_strSource.isEmpty()) {
        HtmlDocument page;
        image->Document()->GetDocument(page);
        if (ImageUpload::FetchCopy(page, src, m_strSource) != 1)
            return 0;
    }
    if (CImageManager().GetImageSize(m_strSource, m_lWidth, m_lHeight) != 1)
        return 0;
    m_nShownWidth = img.offsetWidth();
    m_nShownHeight = img.offsetHeight();
    lblURL->setText(src);
    txtHoriz->setText(QString::number(m_nShownWidth));
    txtVerti->setText(QString::number(m_nShownHeight));
    frmImgProperties::ReadFields(m_misc, img);
    const bool gif = QFileInfo(m_strSource).suffix().compare(QLatin1String("gif"), Qt::CaseInsensitive) == 0;
    lblGifNote->setText(gif ? L(txtGif) + (CImageManager::IsAnimated(m_strSource) ? L(txtAnimated) : QString()) : QString());
    lblGifNote->setVisible(gif);
    ShowFile();
    return 1;
}

void frmImageProperties::ShowFile()
{
    lblNamn->setText(QFileInfo(m_strSource).fileName());
    lblTyp->setText(TypeText(m_strSource));
    lblStorlek->setText(KbText(m_strSource));
    lblFormat->setText(QStringLiteral("%1 x %2 %3").arg(m_lWidth).arg(m_lHeight).arg(L(txtPixels)));
    lblOriginal->setText(L(txtOriginal) + QStringLiteral(" %1 x %2").arg(m_lWidth).arg(m_lHeight));
    lblSize->setText(L(txtCurrent) + QStringLiteral(" %1 x %2").arg(txtHoriz->text(), txtVerti->text()));
    EnableScale();
}

// One box follows the other in the proportion of the file.
void frmImageProperties::txtHoriz_Change()
{
    if (chkProp->isChecked() && m_lWidth > 0)
        txtVerti->setText(QString::number(std::lround(txtHoriz->text().toDouble() * m_lHeight / m_lWidth)));
    EnableScale();
}

void frmImageProperties::txtVerti_Change()
{
    if (chkProp->isChecked() && m_lHeight > 0)
        txtHoriz->setText(QString::number(std::lround(txtVerti->text().toDouble() * m_lWidth / m_lHeight)));
    EnableScale();
}

// Scaling only ever makes a picture smaller: a bigger one gains nothing.
void frmImageProperties::EnableScale()
{
    const long width = txtHoriz->text().toLong(), height = txtVerti->text().toLong();
    bool shrunken = false;
    if (width > 0 && height > 0 && CImageManager().IsShrunken(m_strSource, width, height, shrunken) != 1)
        MError::ClearError();
    cmdScale->setEnabled(width > 0 && height > 0 && shrunken);
    lblSize->setText(L(txtCurrent) + QStringLiteral(" %1 x %2").arg(txtHoriz->text(), txtVerti->text()));
}

void frmImageProperties::txtQuality_Change()
{
    if (txtQuality->text().isEmpty())
        txtQuality->setText(QStringLiteral("1"));
    Slider2->setValue(txtQuality->text().toInt());
}

// The older tick count of a file this program wrote is replaced, so that
// names don't grow with each step.
QString frmImageProperties::GetNewFileName(const QString &strSuffix_p) const
{
    long modified = 0;
    CImageManager().GetIsModified(m_strSource, modified);
    QString base = QFileInfo(m_strSource).completeBaseName();
    if (modified == 1 && base.contains(QLatin1Char('_')))
        base = base.left(base.lastIndexOf(QLatin1Char('_')));
    return ImageUpload::WorkFolder() + QLatin1Char('/') + base + QLatin1Char('_')
           + QString::number(QDateTime::currentMSecsSinceEpoch()) + QLatin1Char('.') + strSuffix_p;
}

void frmImageProperties::cmdPreview_Click()
{
    m_strPreview = ImageUpload::WorkFolder() + QStringLiteral("/preview.jpg");
    if (CImageManager().ConvertToJpg(m_strSource, m_strPreview, txtQuality->text().toLong()) != 1) {
        MError::ShowError();
        return;
    }
    lblNewSize->setText(L(txtNewSize) + QLatin1Char(' ') + KbText(m_strPreview));
    cmdViewPreview->setVisible(true);
}

void frmImageProperties::cmdViewPreview_Click()
{
    QDialog view(this);
    view.setWindowTitle(L(txtViewPreview));
    auto *layout = new QVBoxLayout(&view);
    auto *picture = new QLabel(&view);
    picture->setPixmap(QPixmap(m_strPreview).scaled(800, 600, Qt::KeepAspectRatio, Qt::SmoothTransformation));
    layout->addWidget(picture);
    view.exec();
}

void frmImageProperties::Report(const QString &text)
{
    UserQuestions::MsgBox(text, UserQuestions::vbInformation, L(txtTitle));
}

void frmImageProperties::cmdScale_Click()
{
    const QString target = GetNewFileName(CImageManager::ScaledSuffix(m_strSource));
    if (CImageManager().ScaleImage(m_strSource, target, txtHoriz->text().toLong(), txtVerti->text().toLong()) != 1) {
        MError::ShowError();
        return;
    }
    m_Image->ChangeImage(target);
    m_boolChanged = true;
    m_strSource = target;
    CImageManager().GetImageSize(m_strSource, m_lWidth, m_lHeight);
    lblURL->setText(target);
    ShowFile();
    Report(L(txtRescaled) + QLatin1Char(' ') + QFileInfo(target).fileName() + QStringLiteral(". ") + L(txtUnchanged));
}

void frmImageProperties::cmdCompress_Click()
{
    const QString target = GetNewFileName(QStringLiteral("jpg"));
    if (CImageManager().ConvertToJpg(m_strSource, target, txtQuality->text().toLong()) != 1) {
        MError::ShowError();
        return;
    }
    m_Image->ChangeImage(target);
    m_boolChanged = true;
    m_strSource = target;
    lblURL->setText(target);
    ShowFile();
    Report(L(txtCompressed) + QLatin1Char(' ') + QFileInfo(target).fileName() + QStringLiteral(". ") + L(txtUnchanged));
}

// Only what the user changed is written: a size left as it stood, or an
// attribute left as it was, keeps the page's bytes.
void frmImageProperties::cmdOk_Click()
{
    HtmlElement img = m_Image->Element();
    const int width = txtHoriz->text().toInt(), height = txtVerti->text().toInt();
    if (width > 0 && height > 0 && (width != m_nShownWidth || height != m_nShownHeight)) {
        img.setAttribute(QStringLiteral("width"), QString::number(width));
        img.setAttribute(QStringLiteral("height"), QString::number(height));
        img.setStyleValue(QStringLiteral("width"), QString::number(width) + QStringLiteral("px"));
        img.setStyleValue(QStringLiteral("height"), QString::number(height) + QStringLiteral("px"));
        m_boolChanged = true;
    }
    if (frmImgProperties::WriteFields(m_misc, img))
        m_boolChanged = true;
    accept();
}

long frmImageProperties::Show()
{
    exec();
    return m_boolChanged ? 1 : -1;
}
