#pragma once

#include <QWidget>

class QLineEdit;
class QPushButton;

// The key file of an SFTP site in the settings dialog: the path, typed or
// chosen with Browse, which starts in ~/.ssh where keys usually live. The
// path may hold blanks, unlike the other boxes of the site.
class SshKeyField : public QWidget
{
    Q_OBJECT

public:
    explicit SshKeyField(QWidget *parent = nullptr);

    QString Path() const;
    // Shows a record's path without signalling a change.
    void SetPath(const QString &path);

signals:
    void PathChanged(const QString &path);

private:
    void Browse();

    QLineEdit *m_path = nullptr;
    QPushButton *m_browse = nullptr;
};
