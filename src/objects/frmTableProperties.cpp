#include "objects/frmTableProperties.h"

#include "document/CDocument.h"
#include "fileviews/ServerFolderPaths.h"
#include "fileviews/frmSiteTree.h"
#include "objects/CHTMLImg.h"
#include "objects/CImageManager.h"
#include "objects/TableElement.h"
#include "objects/TableGrid.h"
#include "objects/frmColorDropper.h"
#include "platform/LocalPictureScheme.h"
#include "support/MError.h"
#include "support/MResources.h"
#include "support/OkCancelButtons.h"

#include <QComboBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QTabWidget>
#include <QToolButton>
#include <QVBoxLayout>

namespace {

enum Text : long { txtTitle = 18005, txtTableTab = 18000, txtCellTab = 18201, txtRowTab = 18021, txtPosition = 18211,
                   txtBorder = 17812, txtWidth = 18212, txtHeight = 18213, txtPadding = 18202, txtSpacing = 18203,
                   txtColor = 17606, txtSet = 17618, txtRetrieve = 17646, txtRemove = 17645, txtPicture = 18204,
                   txtRight = 18216, txtCenter = 18217, txtLeft = 18218, txtNotSet = 18205, txtBackground = 18214,
                   txtEdge = 18215, txtLightEdge = 18209, txtDarkEdge = 18210, txtHAlign = 18206, txtVAlign = 18207,
                   txtMergeCells = 18208, txtComing = 18200, txtRows = 18009, txtCols = 18010, txtPrevious = 18219,
                   txtNext = 18220, txtCellOf = 18221, txtRowOf = 18222, txtMergeLeft = 18224, txtMergeRight = 18225,
                   txtMergeDown = 18226, txtBaseline = 18227, txtBottom = 18228, txtMiddle = 18229, txtTop = 18230 };

QString L(long id)
{
    return MResources::LoadResourceString(id);
}

// The color attributes in the order of the color lists.
const char *const kColorAttributes[] = {"bgColor", "borderColor", "borderColorLight", "borderColorDark"};
// The marks of a background picture that waits on the user's disk for
// its upload at Save.
const char *const kPictureMarks[] = {"bgchange", "uploadpath", "relativepath", "bgbytad"};

// The number a size starts with and what follows it ("90%", "12px"), the
// number moved by the step and never below 0.
QString Stepped(const QString &text, int step)
{
    static const QRegularExpression size(QStringLiteral("^\\s*(\\d*)(.*)$"));
    const QRegularExpressionMatch m = size.match(text);
    return QString::number(std::max(0, m.captured(1).toInt() + step)) + m.captured(2).trimmed();
}

QString ColorAttribute(const QComboBox *list)
{
    return QString::fromLatin1(kColorAttributes[std::max(0, list->currentIndex())]);
}

} // namespace

frmTableProperties::frmTableProperties(QWidget *parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("frmTableProperties"));
    setWindowTitle(L(txtTitle));
    auto *layout = new QVBoxLayout(this);
    auto *tabs = new QTabWidget(this);
    tabs->setObjectName(QStringLiteral("TabStrip1"));
    tabs->addTab(BuildTableTab(), L(txtTableTab));
    tabs->addTab(BuildCellTab(), L(txtCellTab));
    tabs->addTab(BuildRowTab(), L(txtRowTab));
    layout->addWidget(tabs);
    OkCancelButtons::Add(this, layout);
}

void frmTableProperties::SetDocument(CDocument *Document_p)
{
    m_Document = Document_p;
}

void frmTableProperties::SetHTMLTable(const HtmlElement &HTMLTable_p)
{
    m_Table = HTMLTable_p;
}

void frmTableProperties::SetCurrentCell(const HtmlElement &cell)
{
    m_Cell = cell;
}

// ------------------------------------------------------------------ building

QPushButton *frmTableProperties::Button(QWidget *parent, long caption, const char *name,
                                        const std::function<void()> &click)
{
    auto *button = new QPushButton(L(caption), parent);
    button->setObjectName(QString::fromLatin1(name));
    button->setAutoDefault(false);
    connect(button, &QPushButton::clicked, this, click);
    return button;
}

// A size typed in goes into the page as it is typed; the arrows beside it
// step its number by one and keep its unit.
QLineEdit *frmTableProperties::SizeBox(QFormLayout *rows, long caption, const char *name, const char *upDown,
                                       const std::function<void(const QString &)> &write)
{
    auto *line = new QHBoxLayout;
    auto *box = new QLineEdit;
    box->setObjectName(QString::fromLatin1(name));
    connect(box, &QLineEdit::textEdited, this, [write](const QString &text) { write(text); });
    line->addWidget(box, 1);
    for (const auto &[arrow, step] : {std::pair{Qt::UpArrow, 1}, {Qt::DownArrow, -1}}) {
        auto *button = new QToolButton;
        button->setObjectName(QString::fromLatin1(upDown) + (step > 0 ? QStringLiteral("Up") : QStringLiteral("Down")));
        button->setArrowType(arrow);
        connect(button, &QToolButton::clicked, this, [box, write, step = step] {
            box->setText(Stepped(box->text(), step));
            write(box->text());
        });
        line->addWidget(button);
    }
    rows->addRow(L(caption), line);
    return box;
}

QComboBox *frmTableProperties::AttributeList(QFormLayout *rows, long caption, const char *name,
                                             std::initializer_list<Choice> choices, const QString &attribute,
                                             const Target &target)
{
    auto *list = new QComboBox;
    list->setObjectName(QString::fromLatin1(name));
    for (const Choice &c : choices)
        list->addItem(L(c.caption), c.value ? QString::fromLatin1(c.value) : QString());
    connect(list, &QComboBox::activated, this,
            [this, list, attribute, target] { Write(target(), attribute, list->currentData().toString()); });
    rows->addRow(L(caption), list);
    return list;
}

QWidget *frmTableProperties::ColorFrame(const char *list, const char *set, const char *get, const char *del, int kinds,
                                        const Target &target)
{
    auto *frame = new QGroupBox(L(txtColor));
    auto *line = new QHBoxLayout(frame);
    auto *kind = new QComboBox(frame);
    kind->setObjectName(QString::fromLatin1(list));
    const long captions[] = {txtBackground, txtEdge, txtLightEdge, txtDarkEdge};
    for (int i = 0; i < kinds; ++i)
        kind->addItem(L(captions[i]));
    line->addWidget(kind, 1);
    line->addWidget(Button(frame, txtSet, set, [this, target, kind] { SetColor(target, kind); }));
    line->addWidget(Button(frame, txtRetrieve, get, [this, target, kind] { GetColor(target, kind); }));
    line->addWidget(Button(frame, txtRemove, del, [this, target, kind] { Write(target(), ColorAttribute(kind), {}); }));
    return frame;
}

QWidget *frmTableProperties::PictureRow(QFormLayout *rows, const char *box, const char *set, const char *del,
                                        const Target &target)
{
    auto *line = new QHBoxLayout;
    auto *path = new QLineEdit;
    path->setObjectName(QString::fromLatin1(box));
    path->setReadOnly(true);
    line->addWidget(path, 1);
    line->addWidget(Button(nullptr, txtSet, set, [this, target, path] { SetBackgroundImage(target, path); }));
    line->addWidget(Button(nullptr, txtRemove, del, [this, target, path] { RemoveBackgroundImage(target, path); }));
    rows->addRow(L(txtPicture), line);
    if (QString::fromLatin1(box) == QLatin1String("txtBackgroundImage"))
        txtBackgroundImage = path;
    else
        txtCellImage = path;
    return path;
}

// Previous and Next around the label that says where the tab stands.
QLabel *frmTableProperties::Walker(QFormLayout *rows, const char *previous, const char *next, const char *label,
                                   const std::function<void(int)> &step)
{
    auto *walk = new QHBoxLayout;
    walk->addWidget(Button(nullptr, txtPrevious, previous, [step] { step(-1); }));
    auto *where = new QLabel;
    where->setObjectName(QString::fromLatin1(label));
    walk->addWidget(where, 1, Qt::AlignCenter);
    walk->addWidget(Button(nullptr, txtNext, next, [step] { step(1); }));
    rows->addRow(walk);
    return where;
}

QWidget *frmTableProperties::BuildTableTab()
{
    auto *page = new QWidget;
    auto *rows = new QFormLayout(page);
    const Target table = [this] { return m_Table; };
    cmbAlignment = AttributeList(rows, txtPosition, "cmbAlignment",
                                 {{txtRight, "right"}, {txtCenter, "center"}, {txtLeft, "left"}, {txtNotSet, nullptr}},
                                 QStringLiteral("align"), table);
    txtLineSize = SizeBox(rows, txtBorder, "txtLineSize", "UpDownLineSize",
                          [this](const QString &v) { Write(m_Table, QStringLiteral("border"), v); });
    txtTableWidth = SizeBox(rows, txtWidth, "txtTableWidth", "UpDownTableWidth",
                            [this](const QString &v) { WriteSize(m_Table, QStringLiteral("width"), v); });
    txtTableHeight = SizeBox(rows, txtHeight, "txtTableHeight", "UpDownTableHeight",
                             [this](const QString &v) { WriteSize(m_Table, QStringLiteral("height"), v); });
    txtCellPadding = SizeBox(rows, txtPadding, "txtCellPadding", "UpDownCellPadding",
                             [this](const QString &v) { Write(m_Table, QStringLiteral("cellPadding"), v); });
    txtCellSpacing = SizeBox(rows, txtSpacing, "txtCellSpacing", "UpDownCellSpacing",
                             [this](const QString &v) { Write(m_Table, QStringLiteral("cellSpacing"), v); });
    rows->addRow(ColorFrame("cmbTableColor", "cmdSetTableColor", "cmdGetTableColor", "cmdDelTableColor", 2, table));
    PictureRow(rows, "txtBackgroundImage", "cmdBrowse", "cmdRemoveBkg", table);
    return page;
}

QWidget *frmTableProperties::BuildCellTab()
{
    auto *page = new QWidget;
    auto *rows = new QFormLayout(page);
    const Target cell = [this] { return m_Cell; };
    lblCell = Walker(rows, "cmdPrev", "cmdNext", "lblCell", [this](int step) { StepCell(step); });
    txtCellWidth = SizeBox(rows, txtWidth, "txtCellWidth", "UpDownCell", [this](const QString &v) { WriteColumnWidth(v); });
    cmbCellHAlign = AttributeList(rows, txtHAlign, "cmbCellHAlign",
                                  {{txtCenter, "center"}, {txtLeft, "left"}, {txtRight, "right"}, {txtNotSet, nullptr}},
                                  QStringLiteral("align"), cell);
    cmbCellVAlign = AttributeList(rows, txtVAlign, "cmbCellVAlign",
                                  {{txtBaseline, "baseline"}, {txtBottom, "bottom"}, {txtCenter, "center"},
                                   {txtMiddle, "middle"}, {txtTop, "top"}, {txtNotSet, nullptr}},
                                  QStringLiteral("vAlign"), cell);

    auto *merge = new QGroupBox(L(txtMergeCells), page);
    auto *mergeRows = new QFormLayout(merge);
    auto *buttons = new QHBoxLayout;
    cmdMergeColsLeft = Button(merge, txtMergeLeft, "cmdMergeColsLeft", [this] { Merge(TableElement::Left, txtMergeCols); });
    cmdMergeColsRight = Button(merge, txtMergeRight, "cmdMergeColsRight", [this] { Merge(TableElement::Right, txtMergeCols); });
    cmdMergeRowsDown = Button(merge, txtMergeDown, "cmdMergeRowsDown", [this] { Merge(TableElement::Down, txtMergeRows); });
    for (QPushButton *b : {cmdMergeColsLeft, cmdMergeColsRight, cmdMergeRowsDown})
        buttons->addWidget(b);
    mergeRows->addRow(buttons);
    // How many neighbours one press takes in; the arrows only count here.
    const auto count = [](const QString &) {};
    txtMergeCols = SizeBox(mergeRows, txtCols, "txtMergeCols", "UpDownMergeCols", count);
    txtMergeRows = SizeBox(mergeRows, txtRows, "txtMergeRows", "UpDownMergeRows", count);
    auto *coming = new QLabel(L(txtComing), merge);
    coming->setObjectName(QStringLiteral("lblCommingFeature"));
    coming->setWordWrap(true);
    mergeRows->addRow(coming);
    rows->addRow(merge);

    rows->addRow(ColorFrame("cmbCellColor", "cmdSetCelColor", "cmdGetCellColor", "cmdDelCellColor", 4, cell));
    PictureRow(rows, "txtCellImage", "cmdSetCellImage", "cmdDelCellImage", cell);
    return page;
}

QWidget *frmTableProperties::BuildRowTab()
{
    auto *page = new QWidget;
    auto *rows = new QFormLayout(page);
    const Target row = [this] { return m_Row; };
    lblRow = Walker(rows, "cmdPrevRow", "cmdNextRow", "lblRow", [this](int step) { StepRow(step); });
    txtRowHeight = SizeBox(rows, txtHeight, "txtRowHeight", "UpDownRow",
                           [this](const QString &v) { Write(m_Row, QStringLiteral("height"), v); });
    cmbRowHAlign = AttributeList(rows, txtHAlign, "cmbRowHAlign",
                                 {{txtCenter, "center"}, {txtLeft, "left"}, {txtRight, "right"}, {txtNotSet, nullptr}},
                                 QStringLiteral("align"), row);
    cmbRowVAlign = AttributeList(rows, txtVAlign, "cmbRowVAlign",
                                 {{txtMiddle, "middle"}, {txtBottom, "bottom"}, {txtTop, "top"}, {txtNotSet, nullptr}},
                                 QStringLiteral("vAlign"), row);
    rows->addRow(ColorFrame("cmbRowColor", "cmdSetRowColor", "cmdGetRowColor", "cmdDelRowColor", 4, row));
    return page;
}

// ------------------------------------------------------------------ loading

long frmTableProperties::Show()
{
    Form_Load();
    if (MError::ErrorNumber() != 0)
        return 0;
    const bool kept = exec() == QDialog::Accepted;
    if (kept && m_boolDirty && m_Document)
        m_Document->SetDirty();
    return kept && m_boolDirty ? 1 : -1;
}

void frmTableProperties::Form_Load()
{
    m_strOriginal = m_Table.outerHTML();
    const QList<HtmlElement> cells = Cells();
    if (m_Cell.isNull() || !cells.contains(m_Cell))
        m_Cell = cells.value(0);
    m_Row = m_Cell.isNull() ? Rows().value(0) : m_Cell.parentElement();
    FillTableTab();
    FillCellTab();
    FillRowTab();
}

// A size given in the style is shown before the attribute, and the size
// the engine gave the table when neither is written.
void frmTableProperties::FillTableTab()
{
    const auto size = [this](const QString &name, const char *client) {
        QString value = m_Table.styleValue(name);
        if (value.isEmpty())
            value = m_Table.getAttribute(name).toString();
        return value.isEmpty() ? m_Table.property(QString::fromLatin1(client)).toString() : value;
    };
    txtTableWidth->setText(size(QStringLiteral("width"), "clientWidth"));
    txtTableHeight->setText(size(QStringLiteral("height"), "clientHeight"));
    txtCellPadding->setText(m_Table.getAttribute(QStringLiteral("cellPadding")).toString());
    txtCellSpacing->setText(m_Table.getAttribute(QStringLiteral("cellSpacing")).toString());
    txtLineSize->setText(m_Table.getAttribute(QStringLiteral("border")).toString());
    const QString picture = m_Table.getAttribute(QStringLiteral("background")).toString();
    txtBackgroundImage->setText(LocalPictureScheme::PathOf(picture).isEmpty() ? picture : LocalPictureScheme::PathOf(picture));
    ShowList(cmbAlignment, m_Table.getAttribute(QStringLiteral("align")).toString());
}

void frmTableProperties::FillCellTab()
{
    const QList<HtmlElement> cells = Cells();
    lblCell->setText(L(txtCellOf).arg(cells.indexOf(m_Cell) + 1).arg(cells.size()));
    txtCellWidth->setText(m_Cell.getAttribute(QStringLiteral("width")).toString());
    ShowList(cmbCellHAlign, m_Cell.getAttribute(QStringLiteral("align")).toString());
    ShowList(cmbCellVAlign, m_Cell.getAttribute(QStringLiteral("vAlign")).toString());
    const QString picture = m_Cell.getAttribute(QStringLiteral("background")).toString();
    txtCellImage->setText(LocalPictureScheme::PathOf(picture).isEmpty() ? picture : LocalPictureScheme::PathOf(picture));
    if (txtMergeCols->text().isEmpty())
        txtMergeCols->setText(QStringLiteral("1"));
    if (txtMergeRows->text().isEmpty())
        txtMergeRows->setText(QStringLiteral("1"));
    CheckMerges();
}

void frmTableProperties::FillRowTab()
{
    const QList<HtmlElement> rows = Rows();
    if (!rows.contains(m_Row)) // a merge took it out
        m_Row = m_Cell.isNull() ? rows.value(0) : m_Cell.parentElement();
    lblRow->setText(L(txtRowOf).arg(rows.indexOf(m_Row) + 1).arg(rows.size()));
    txtRowHeight->setText(m_Row.getAttribute(QStringLiteral("height")).toString());
    ShowList(cmbRowHAlign, m_Row.getAttribute(QStringLiteral("align")).toString());
    ShowList(cmbRowVAlign, m_Row.getAttribute(QStringLiteral("vAlign")).toString());
}

// A value none of the items has reads as "Not set", the last item.
void frmTableProperties::ShowList(QComboBox *list, const QString &value)
{
    int index = list->count() - 1;
    for (int i = 0; i < list->count() - 1; ++i)
        if (list->itemData(i).toString().compare(value.trimmed(), Qt::CaseInsensitive) == 0)
            index = i;
    list->setCurrentIndex(index);
}

// The cells and rows in the table's own order: nested tables' cells are
// not the table's.
QList<HtmlElement> frmTableProperties::Cells() const
{
    QList<HtmlElement> cells;
    for (const TableGrid::SectionIn &section : TableElement(m_Table).Snapshot())
        for (const TableGrid::RowIn &row : section)
            for (const TableGrid::CellIn &cell : row.cells)
                cells.append(HtmlElement(m_Table.browser(), cell.id));
    return cells;
}

QList<HtmlElement> frmTableProperties::Rows() const
{
    QList<HtmlElement> rows;
    for (const TableGrid::SectionIn &section : TableElement(m_Table).Snapshot())
        for (const TableGrid::RowIn &row : section)
            rows.append(HtmlElement(m_Table.browser(), row.id));
    return rows;
}

// ------------------------------------------------------------------ changes

void frmTableProperties::Changed()
{
    m_boolDirty = true;
}

// An emptied value takes the attribute off.
void frmTableProperties::Write(HtmlElement element, const QString &attribute, const QString &value)
{
    if (element.isNull())
        return;
    if (value.trimmed().isEmpty())
        element.removeAttribute(attribute);
    else
        element.setAttribute(attribute, value.trimmed());
    Changed();
}

// A size stays where the page gave it: in the style, or as the attribute.
void frmTableProperties::WriteSize(HtmlElement element, const QString &name, const QString &value)
{
    if (element.styleValue(name).isEmpty()) {
        Write(element, name, value);
        return;
    }
    element.setStyleValue(name, value.trimmed());
    Changed();
}

// A width is a column's: every cell that starts in the current cell's
// column of the grid and is as wide gets it.
void frmTableProperties::WriteColumnWidth(const QString &value)
{
    TableGrid grid;
    grid.SetTableStructure(TableElement(m_Table).Snapshot());
    long row = 0, col = 0;
    if (!grid.GetSqrIndex(m_Cell.handle(), row, col)) {
        Write(m_Cell, QStringLiteral("width"), value);
        return;
    }
    const long span = grid.Square(int(row), int(col)).lColSpan;
    for (const HtmlElement &cell : Cells()) {
        long r = 0, c = 0;
        if (grid.GetSqrIndex(cell.handle(), r, c) && c == col && grid.Square(int(r), int(c)).lColSpan == span)
            Write(cell, QStringLiteral("width"), value);
    }
}

void frmTableProperties::SetColor(const Target &target, const QComboBox *list)
{
    HtmlElement element = target();
    const QString attribute = ColorAttribute(list);
    const QString color =
        frmColorDropper::ChooseColor(this, element.getAttribute(attribute).toString(), list->currentText());
    if (!color.isEmpty())
        Write(element, attribute, color);
}

// The dropper writes the color it picked on the element itself.
void frmTableProperties::GetColor(const Target &target, const QComboBox *list)
{
    frmColorDropper dropper(this);
    dropper.Init(ColorAttribute(list), target());
    if (dropper.Show() == 1)
        Changed();
}

// The page shows the picture from the user's disk at once; Save uploads
// it to the folder chosen here and names it by the way from the page to
// that folder.
void frmTableProperties::SetBackgroundImage(const Target &target, QLineEdit *box)
{
    const QString file = CHTMLImg::ChoosePictureFile(this);
    if (file.isEmpty())
        return;
    long width = 0, height = 0;
    if (CImageManager().GetImageSize(file, width, height) != 1) {
        MError::ShowError();
        return;
    }
    frmSiteTree &tree = frmSiteTree::Instance();
    QString folder;
    if (tree.GetUpLoadPath(folder) != 1)
        return;
    HtmlDocument page;
    m_Document->GetDocument(page);
    HtmlElement element = target();
    element.setAttribute(QStringLiteral("bgchange"), QStringLiteral("true"));
    element.setAttribute(QStringLiteral("uploadpath"), folder);
    element.setAttribute(QStringLiteral("relativepath"), ServerFolderPaths::RelativePath(page.pathname(), tree.ChosenKey()));
    element.removeAttribute(QStringLiteral("bgbytad"));
    Write(element, QStringLiteral("background"), LocalPictureScheme::AddressOf(file));
    box->setText(file);
}

void frmTableProperties::RemoveBackgroundImage(const Target &target, QLineEdit *box)
{
    HtmlElement element = target();
    for (const char *mark : kPictureMarks)
        element.removeAttribute(QString::fromLatin1(mark));
    Write(element, QStringLiteral("background"), {});
    box->clear();
}

// The element before or after the current one in the list; it stays at
// the first and the last.
bool frmTableProperties::Step(const QList<HtmlElement> &list, HtmlElement &current, int step)
{
    const qsizetype at = list.indexOf(current) + step;
    if (at < 0 || at >= list.size())
        return false;
    current = list.at(at);
    return true;
}

void frmTableProperties::StepCell(int step)
{
    if (Step(Cells(), m_Cell, step))
        FillCellTab();
}

void frmTableProperties::StepRow(int step)
{
    if (Step(Rows(), m_Row, step))
        FillRowTab();
}

// As many neighbours as the box says go into the cell, one by one, as
// long as the grid allows.
void frmTableProperties::Merge(int direction, const QLineEdit *count)
{
    TableElement table(m_Table);
    const auto way = TableElement::Direction(direction);
    for (int n = std::max(1, count->text().toInt()); n > 0 && table.CanMerge(m_Cell, way); --n) {
        if (!table.Merge(m_Cell, way))
            break;
        Changed();
    }
    if (MError::ErrorNumber() != 0)
        MError::ShowError();
    FillCellTab();
    FillRowTab();
}

void frmTableProperties::CheckMerges()
{
    const TableElement table(m_Table);
    cmdMergeColsLeft->setEnabled(table.CanMerge(m_Cell, TableElement::Left));
    cmdMergeColsRight->setEnabled(table.CanMerge(m_Cell, TableElement::Right));
    cmdMergeRowsDown->setEnabled(table.CanMerge(m_Cell, TableElement::Down));
}

// The table goes back to the markup it had when the dialog opened; one
// left as it was isn't touched, so the objects in its cells stay bound.
void frmTableProperties::reject()
{
    if (m_Table.outerHTML() != m_strOriginal)
        m_Table.setOuterHTML(m_strOriginal);
    m_boolDirty = false;
    QDialog::reject();
}
