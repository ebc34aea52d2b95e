#include "objects/CVisibility.h"

#include "objects/ctlVisibility.h"
#include "platform/PageEvent.h"
#include "platform/WebBrowser.h"
#include "support/Hourglass.h"
#include "support/MError.h"
#include "support/MResources.h"

namespace {
constexpr long kHideAllReset = 19200;
constexpr long kHidden = 19201;
constexpr int kRightButton = 2;

const QString kVisible = QStringLiteral("visible");
const QString kHiddenValue = QStringLiteral("hidden");
} // namespace

long CVisibility::Init(ctlVisibility *ctlVisibility_p, const HtmlDocument &Document_p, long lDocIndex_p)
{
    Hourglass wait;
    m_ctlVisibility = ctlVisibility_p;
    m_Document = Document_p;
    m_lDocIndex = lDocIndex_p;
    if (!Call(QStringLiteral("layers.mark"), QStringLiteral("CVisibility.Init")).isValid())
        return 0;
    connect(m_Document.browser(), &WebBrowser::pageEvent, this, &CVisibility::m_Document_onmousedown);
    if (m_ctlVisibility) {
        connect(m_ctlVisibility, &ctlVisibility::NewCheck, this, &CVisibility::m_ctlVisibility_NewCheck);
        connect(m_ctlVisibility, &ctlVisibility::MouseIn, this, &CVisibility::m_ctlVisibility_MouseIn);
        connect(m_ctlVisibility, &ctlVisibility::MouseOut, this, &CVisibility::m_ctlVisibility_MouseOut);
    }
    return 1;
}

// The list goes with the edit of the document it shows.
CVisibility::~CVisibility()
{
    if (OwnsList())
        m_ctlVisibility->Clear();
}

long CVisibility::RestoreLayers()
{
    return Call(QStringLiteral("layers.restore"), QStringLiteral("CVisibility.RestoreLayers")).isValid() ? 1 : 0;
}

// A function of the page's runtime on this document.
QVariant CVisibility::Call(const QString &function, const QString &position) const
{
    return m_Document.callRuntime(function, {}, position);
}

bool CVisibility::OwnsList() const
{
    return m_ctlVisibility && m_ctlVisibility->DocIndex() == m_lDocIndex;
}

// Only a press of the right button with Shift held fills the list; any
// other click leaves the list and its rows alone.
void CVisibility::m_Document_onmousedown(const PageEvent &event)
{
    if (event.type != QLatin1String("mousedown") || event.button != kRightButton || !event.shift
        || event.frame != m_Document.framePath() || !m_ctlVisibility)
        return;
    FillList();
    Report();
}

// The caption shows the layer's id, by which the user tells layers apart.
// A style that hides in capitals hides all the same, so it is listed as
// hidden too.
void CVisibility::FillList()
{
    const QVariantList layers = Call(QStringLiteral("layers.list"), QStringLiteral("CVisibility.FillList")).toList();
    if (MError::ErrorNumber() != 0)
        return;
    m_ctlVisibility->SetDocIndex(m_lDocIndex);
    m_ctlVisibility->Clear();
    m_ctlVisibility->AddRow(QStringLiteral("All"), MResources::LoadResourceString(kHideAllReset), 0);
    m_aRows.clear();
    for (const QVariant &entry : layers) {
        const QVariantMap layer = entry.toMap();
        const Row row{layer.value(QStringLiteral("h")).toInt(), layer.value(QStringLiteral("visibility")).toString(),
                      layer.value(QStringLiteral("visibility")).toString().compare(kHiddenValue, Qt::CaseInsensitive) == 0};
        QString caption = layer.value(QStringLiteral("tag")).toString() + QLatin1Char(' ')
                          + layer.value(QStringLiteral("id")).toString();
        if (row.hidden)
            caption += QLatin1Char(' ') + MResources::LoadResourceString(kHidden);
        m_ctlVisibility->AddRow(QString::number(row.handle), caption, row.hidden ? 0 : 1);
        m_aRows.append(row);
    }
}

// The first row: ticked hides every layer and clears every tick; unticked
// puts each tick and each layer back as the list was filled, not as the
// user last set them one by one. Other rows take effect as the pointer
// leaves them.
void CVisibility::m_ctlVisibility_NewCheck(long lIndex, bool bChecked)
{
    if (!OwnsList() || lIndex != 0)
        return;
    QList<std::pair<int, QString>> layers;
    if (bChecked) {
        for (long row = 1; row <= m_ctlVisibility->RowCount(); ++row)
            m_ctlVisibility->SetRowCheck(row, false);
        for (const Row &row : m_aRows)
            layers.append({row.handle, kHiddenValue});
    } else {
        for (qsizetype i = 0; i < m_aRows.size(); ++i) {
            m_ctlVisibility->SetRowCheck(long(i) + 1, !m_aRows[i].hidden);
            layers.append({m_aRows[i].handle, m_aRows[i].visibility});
        }
    }
    SetVisibility(layers, QStringLiteral("CVisibility.m_ctlVisibility_NewCheck"));
}

// The layer shows while the pointer lies on its row.
void CVisibility::m_ctlVisibility_MouseIn(long lIndex)
{
    if (!OwnsList() || lIndex == 0)
        return;
    SetVisibility({{int(lIndex), kVisible}}, QStringLiteral("CVisibility.m_ctlVisibility_MouseIn"));
}

void CVisibility::m_ctlVisibility_MouseOut(long lIndex, long lRow)
{
    if (!OwnsList() || lIndex == 0)
        return;
    bool ticked = false;
    m_ctlVisibility->GetRowCheck(lRow, ticked);
    SetVisibility({{int(lIndex), ticked ? kVisible : kHiddenValue}},
                  QStringLiteral("CVisibility.m_ctlVisibility_MouseOut"));
}

bool CVisibility::SetVisibility(const QList<std::pair<int, QString>> &layers, const QString &position)
{
    if (layers.isEmpty())
        return true;
    QVariantList pairs;
    for (const auto &[handle, value] : layers)
        pairs.append(QVariant(QVariantList{handle, value}));
    m_Document.callRuntime(QStringLiteral("layers.set"), {QVariant(pairs)}, position);
    return Report();
}

// The handlers are the user's own acts: a failure is shown, under the
// place the handler gave its call, and what was done before it stays done.
bool CVisibility::Report()
{
    if (MError::ErrorNumber() == 0)
        return true;
    MError::ShowError();
    return false;
}
