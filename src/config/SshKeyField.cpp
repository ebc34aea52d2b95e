#include "config/SshKeyField.h"

#include "support/MResources.h"
#include "support/StringIds.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalBlocker>

SshKeyField::SshKeyField(QWidget *parent) : QWidget(parent)
{
    m_path = new QLineEdit(this);
    m_path->setObjectName(QStringLiteral("txtSshKey"));
    m_path->setToolTip(MResources::LoadResourceString(StringIds::SshKeyTip));
    m_browse = new QPushButton(MResources::LoadResourceString(StringIds::SshKeyBrowse), this);
    m_browse->setObjectName(QStringLiteral("cmdBrowseSshKey"));
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(m_path, 1);
    row->addWidget(m_browse);
    connect(m_path, &QLineEdit::textChanged, this, [this] { emit PathChanged(Path()); });
    connect(m_browse, &QPushButton::clicked, this, &SshKeyField::Browse);
}

QString SshKeyField::Path() const
{
    return m_path->text().trimmed();
}

void SshKeyField::SetPath(const QString &path)
{
    const QSignalBlocker quiet(m_path);
    m_path->setText(path);
}

void SshKeyField::Browse()
{
    QString start = QFileInfo(Path()).absolutePath();
    if (Path().isEmpty())
        start = QDir::home().filePath(QStringLiteral(".ssh"));
    // Keys have no common extension, and their folder is hidden.
    QFileDialog dialog(this, MResources::LoadResourceString(StringIds::SshKeyChooseTitle), start);
    dialog.setFileMode(QFileDialog::ExistingFile);
    dialog.setFilter(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return;
    m_path->setText(dialog.selectedFiles().first());
}
