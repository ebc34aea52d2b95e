#pragma once

#include "platform/HtmlElement.h"

#include <QDialog>

#include <functional>

class CDocument;
class QComboBox;
class QFormLayout;
class QLabel;
class QLineEdit;
class QPushButton;

// The properties of one table of the page, on three tabs: the table, one
// cell and one row. Every change goes straight into the page, so the page
// behind the dialog shows it at once; Cancel puts the table back as it was
// when the dialog opened, to the byte. The cell tab also merges the cell
// with its neighbours over the table's grid.
class frmTableProperties : public QDialog
{
    Q_OBJECT

public:
    explicit frmTableProperties(QWidget *parent = nullptr);

    void SetDocument(CDocument *Document_p);
    void SetHTMLTable(const HtmlElement &HTMLTable_p);
    // The cell the pointer was on; without one the table's first cell.
    void SetCurrentCell(const HtmlElement &cell);
    // Loads the form and runs it modally. 1 when OK kept a change, -1 when
    // nothing changed or Cancel undid it.
    long Show();
    bool GetDirty() const { return m_boolDirty; }

    void reject() override;

private:
    using Target = std::function<HtmlElement()>;
    struct Choice
    {
        long caption;
        const char *value; // nullptr: "Not set", the attribute goes
    };

    QWidget *BuildTableTab();
    QWidget *BuildCellTab();
    QWidget *BuildRowTab();
    QLineEdit *SizeBox(QFormLayout *rows, long caption, const char *name, const char *upDown,
                       const std::function<void(const QString &)> &write);
    QComboBox *AttributeList(QFormLayout *rows, long caption, const char *name, std::initializer_list<Choice> choices,
                             const QString &attribute, const Target &target);
    QWidget *ColorFrame(const char *list, const char *set, const char *get, const char *del, int kinds,
                        const Target &target);
    QWidget *PictureRow(QFormLayout *rows, const char *box, const char *set, const char *del, const Target &target);
    QPushButton *Button(QWidget *parent, long caption, const char *name, const std::function<void()> &click);
    QLabel *Walker(QFormLayout *rows, const char *previous, const char *next, const char *label,
                   const std::function<void(int)> &step);
    static bool Step(const QList<HtmlElement> &list, HtmlElement &current, int step);

    void Form_Load();
    void FillTableTab();
    void FillCellTab();
    void FillRowTab();
    void ShowList(QComboBox *list, const QString &value);
    void Write(HtmlElement element, const QString &attribute, const QString &value);
    void WriteSize(HtmlElement element, const QString &name, const QString &value);
    void WriteColumnWidth(const QString &value);
    void SetColor(const Target &target, const QComboBox *list);
    void GetColor(const Target &target, const QComboBox *list);
    void SetBackgroundImage(const Target &target, QLineEdit *box);
    void RemoveBackgroundImage(const Target &target, QLineEdit *box);
    void StepCell(int step);
    void StepRow(int step);
    void Merge(int direction, const QLineEdit *count);
    void CheckMerges();
    void Changed();
    QList<HtmlElement> Cells() const;
    QList<HtmlElement> Rows() const;

    CDocument *m_Document = nullptr;
    HtmlElement m_Table;
    HtmlElement m_Cell;
    HtmlElement m_Row;
    QString m_strOriginal;
    bool m_boolDirty = false;

    QComboBox *cmbAlignment = nullptr;
    QLineEdit *txtLineSize = nullptr;
    QLineEdit *txtTableWidth = nullptr;
    QLineEdit *txtTableHeight = nullptr;
    QLineEdit *txtCellPadding = nullptr;
    QLineEdit *txtCellSpacing = nullptr;
    QLineEdit *txtBackgroundImage = nullptr;
    QLineEdit *txtCellWidth = nullptr;
    QComboBox *cmbCellHAlign = nullptr;
    QComboBox *cmbCellVAlign = nullptr;
    QPushButton *cmdMergeColsLeft = nullptr;
    QPushButton *cmdMergeColsRight = nullptr;
    QPushButton *cmdMergeRowsDown = nullptr;
    QLineEdit *txtMergeCols = nullptr;
    QLineEdit *txtMergeRows = nullptr;
    QLineEdit *txtCellImage = nullptr;
    QLineEdit *txtRowHeight = nullptr;
    QComboBox *cmbRowHAlign = nullptr;
    QComboBox *cmbRowVAlign = nullptr;
    QLabel *lblCell = nullptr;
    QLabel *lblRow = nullptr;
};
