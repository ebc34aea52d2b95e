#pragma once

#include <QDialog>

class QComboBox;
class QGroupBox;
class QLabel;
class QLineEdit;

// The sizes of a new table: its border width and its numbers of rows and
// columns. The caller reads the boxes itself after the dialog closed and
// checks them (the dialog takes any text). The frame with the table's
// layout and the note about rows of different lengths serve a table that
// exists; the insert command hides them.
class frmTableSettings : public QDialog
{
    Q_OBJECT

public:
    explicit frmTableSettings(QWidget *parent = nullptr);

    // Hides the layout frame and its note, for a new table.
    void HideLayout();
    // Runs the dialog modally; Cancelled() tells how it closed.
    void Show();
    bool Cancelled() const { return m_boolCancelled; }

    QLineEdit *txtBorderSize = nullptr;
    QLineEdit *txtNumRows = nullptr;
    QLineEdit *txtNumCols = nullptr;
    QLineEdit *txtCellSpacing = nullptr;
    QLineEdit *txtCellPadding = nullptr;
    QComboBox *cmbAlignment = nullptr;

private:
    QGroupBox *frmLayout = nullptr;
    QLabel *lblTableWidthWarning = nullptr;
    QLabel *imgWarningTableWidth = nullptr;
    bool m_boolCancelled = true;
};
