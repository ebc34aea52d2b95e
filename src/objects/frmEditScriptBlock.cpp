#include "objects/frmEditScriptBlock.h"

#include "support/MResources.h"

#include <QComboBox>
#include <QFontDatabase>
#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

enum Text : long { txtCancel = 13012, txtSave = 17002, txtTitle = 17622, txtAdd = 18822, txtFunctions = 18837 };

QString L(long id)
{
    return MResources::LoadResourceString(id);
}

// The functions as they go into the page, one per entry of TemplateNames.
const char *const kTemplates[] = {
    "function hideLayers(strArrayLayerIDs) {\n"
    "  var ids = strArrayLayerIDs.split('|');\n"
    "  for (var i = 0; i < ids.length; i++) {\n"
    "    var layer = document.getElementById(ids[i]);\n"
    "    if (layer) layer.style.visibility = 'hidden';\n"
    "  }\n"
    "}",
    "function showLayers(strArrayLayerIDs) {\n"
    "  var ids = strArrayLayerIDs.split('|');\n"
    "  for (var i = 0; i < ids.length; i++) {\n"
    "    var layer = document.getElementById(ids[i]);\n"
    "    if (layer) layer.style.visibility = 'visible';\n"
    "  }\n"
    "}",
    "function changePic(strPicName) {\n"
    "  document.bildObjektsNamn.src = './images/' + strPicName;\n"
    "}",
    "function MM_swapImgRestore() {\n"
    "  var i, x, a = document.MM_sr;\n"
    "  for (i = 0; a && i < a.length && (x = a[i]) && x.oSrc; i++) x.src = x.oSrc;\n"
    "}",
    "function MM_preloadImages() {\n"
    "  var d = document;\n"
    "  if (d.images) {\n"
    "    if (!d.MM_p) d.MM_p = new Array();\n"
    "    var i, j = d.MM_p.length, a = MM_preloadImages.arguments;\n"
    "    for (i = 0; i < a.length; i++)\n"
    "      if (a[i].indexOf('#') != 0) { d.MM_p[j] = new Image; d.MM_p[j++].src = a[i]; }\n"
    "  }\n"
    "}",
    "function MM_findObj(n, d) {\n"
    "  var p, i, x;\n"
    "  if (!d) d = document;\n"
    "  if ((p = n.indexOf('?')) > 0 && parent.frames.length) {\n"
    "    d = parent.frames[n.substring(p + 1)].document; n = n.substring(0, p);\n"
    "  }\n"
    "  if (!(x = d[n]) && d.all) x = d.all[n];\n"
    "  for (i = 0; !x && i < d.forms.length; i++) x = d.forms[i][n];\n"
    "  for (i = 0; !x && d.layers && i < d.layers.length; i++) x = MM_findObj(n, d.layers[i].document);\n"
    "  if (!x && d.getElementById) x = d.getElementById(n);\n"
    "  return x;\n"
    "}",
    "function MM_swapImage() {\n"
    "  var i, j = 0, x, a = MM_swapImage.arguments;\n"
    "  document.MM_sr = new Array;\n"
    "  for (i = 0; i < (a.length - 2); i += 3)\n"
    "    if ((x = MM_findObj(a[i])) != null) { document.MM_sr[j++] = x; if (!x.oSrc) x.oSrc = x.src; x.src = a[i + 2]; }\n"
    "}",
    "function MM_openBrWindow(theURL, winName, features) {\n"
    "  window.open(theURL, winName, features);\n"
    "}",
};

} // namespace

const QStringList &frmEditScriptBlock::TemplateNames()
{
    static const QStringList names = {
        QStringLiteral("hideLayers(strArrayLayerIDs)"), QStringLiteral("showLayers(strArrayLayerIDs)"),
        QStringLiteral("changePic(strPicName)"),        QStringLiteral("MM_swapImgRestore()"),
        QStringLiteral("MM_preloadImages()"),           QStringLiteral("MM_findObj(n, d)"),
        QStringLiteral("MM_swapImage()"),               QStringLiteral("MM_openBrWindow(theURL,winName,features)")};
    return names;
}

QString frmEditScriptBlock::TemplateText(int index)
{
    return index >= 0 && index < int(std::size(kTemplates)) ? QString::fromLatin1(kTemplates[index]) : QString();
}

frmEditScriptBlock::frmEditScriptBlock(QWidget *parent)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("frmEditScriptBlock"));
    setWindowTitle(L(txtTitle));
    auto *column = new QVBoxLayout(this);
    txtScriptText = new QPlainTextEdit(this);
    txtScriptText->setObjectName(QStringLiteral("txtScriptText"));
    txtScriptText->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    txtScriptText->setLineWrapMode(QPlainTextEdit::NoWrap);
    txtScriptText->setTabChangesFocus(false);
    column->addWidget(txtScriptText, 1);
    auto *row = new QHBoxLayout;
    row->addWidget(new QLabel(L(txtFunctions), this));
    cboAddJavaScript = new QComboBox(this);
    cboAddJavaScript->setObjectName(QStringLiteral("cboAddJavaScript"));
    cboAddJavaScript->addItems(TemplateNames());
    row->addWidget(cboAddJavaScript, 1);
    auto *add = new QPushButton(L(txtAdd), this);
    add->setObjectName(QStringLiteral("cmdAddScriptToTextbox"));
    row->addWidget(add);
    column->addLayout(row);
    auto *buttons = new QHBoxLayout;
    auto *save = new QPushButton(L(txtSave), this);
    save->setObjectName(QStringLiteral("cmdSave"));
    auto *cancel = new QPushButton(L(txtCancel), this);
    cancel->setObjectName(QStringLiteral("cmdCancel"));
    buttons->addStretch(1);
    buttons->addWidget(save);
    buttons->addWidget(cancel);
    column->addLayout(buttons);
    connect(add, &QPushButton::clicked, this, &frmEditScriptBlock::cmdAddScriptToTextbox_Click);
    connect(save, &QPushButton::clicked, this, [this] {
        m_boolSaved = true;
        accept();
    });
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    resize(640, 480);
}

long frmEditScriptBlock::Init(const QString &strJavaScript_p)
{
    txtScriptText->setPlainText(strJavaScript_p);
    return 1;
}

QString frmEditScriptBlock::Text() const
{
    return txtScriptText->toPlainText();
}

long frmEditScriptBlock::Show()
{
    m_boolSaved = false;
    exec();
    return m_boolSaved ? 1 : -1;
}

// The function goes in on a line of its own in front of the comment's
// close, so that it stays hidden from browsers without script; a text
// without that close gets it at its end.
void frmEditScriptBlock::cmdAddScriptToTextbox_Click()
{
    const QString code = TemplateText(cboAddJavaScript->currentIndex());
    QString text = Text();
    const qsizetype close = text.lastIndexOf(QLatin1String("//-->"));
    if (close < 0) {
        if (!text.isEmpty() && !text.endsWith(QLatin1Char('\n')))
            text += QLatin1Char('\n');
        text += code + QLatin1Char('\n');
    } else {
        QString before = text.left(close);
        if (!before.isEmpty() && !before.endsWith(QLatin1Char('\n')))
            before += QLatin1Char('\n');
        text = before + code + QLatin1Char('\n') + text.mid(close);
    }
    txtScriptText->setPlainText(text);
}
