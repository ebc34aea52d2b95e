#include "shell/PagePictureDrop.h"

#include "document/CDocument.h"
#include "objects/CHTMLImg.h"
#include "platform/PageScriptCall.h"
#include "platform/WebBrowser.h"
#include "shell/EditSession.h"
#include "support/MError.h"

#include <QApplication>
#include <QDropEvent>
#include <QFileInfo>
#include <QMimeData>
#include <QTimer>
#include <QUrl>

namespace {
const QStringList kSuffixes = {QStringLiteral("jpg"), QStringLiteral("jpeg"), QStringLiteral("png"),
                               QStringLiteral("gif"), QStringLiteral("bmp")};
}

// The page's own widgets take drops before the browser sees them, so the
// filter sits on the application and picks out the browser's share.
PagePictureDrop::PagePictureDrop(EditSession &session, WebBrowser *browser)
    : QObject(browser)
    , m_session(session)
    , m_browser(browser)
{
    qApp->installEventFilter(this);
}

QStringList PagePictureDrop::PictureFiles(const QDropEvent *event)
{
    QStringList files;
    const QMimeData *data = event->mimeData();
    if (!data || !data->hasUrls())
        return {};
    for (const QUrl &url : data->urls()) {
        if (!url.isLocalFile() || !kSuffixes.contains(QFileInfo(url.toLocalFile()).suffix().toLower()))
            return {};
        files << url.toLocalFile();
    }
    return files;
}

bool PagePictureDrop::eventFilter(QObject *watched, QEvent *event)
{
    const QEvent::Type type = event->type();
    if (type != QEvent::DragEnter && type != QEvent::DragMove && type != QEvent::Drop)
        return false;
    auto *widget = qobject_cast<QWidget *>(watched);
    if (!widget || (widget != m_browser && !m_browser->isAncestorOf(widget)))
        return false;
    if (!m_session.DocumentLoaded() || m_session.Saving() || m_session.Running())
        return false;
    auto *drop = static_cast<QDropEvent *>(event);
    const QStringList files = PictureFiles(drop);
    if (files.isEmpty())
        return false;
    drop->setDropAction(Qt::CopyAction);
    drop->accept();
    if (type == QEvent::Drop) {
        // The drop ends first: the questions that follow are modal.
        const QPoint at = m_browser->mapFromGlobal(widget->mapToGlobal(drop->position().toPoint()));
        QTimer::singleShot(0, this, [this, files, at] { Insert(files, at); });
    }
    return true;
}

// The picture goes into the document the user works in: the page, or on
// a frameset the frame he last clicked.
void PagePictureDrop::Insert(const QStringList &files, const QPoint &at)
{
    const auto &documents = m_session.Documents();
    if (documents.empty() || !m_session.DocumentLoaded())
        return;
    const long index = documents.size() == 1 ? 0 : m_session.DocIndex();
    if (index < 0 || index >= long(documents.size()))
        return;
    CDocument &document = *documents[size_t(index)];
    if (!document.EditIsOn() || document.boolNoEdit)
        return;
    HtmlDocument page;
    document.GetDocument(page);
    const bool editable = PageScriptCall::call(m_browser->page(), QStringLiteral("img.caretAt"),
                                               {QVariant::fromValue(page.framePath()), at.x(), at.y()},
                                               QStringLiteral("PagePictureDrop.Insert"))
                              .toBool();
    if (!editable) {
        MError::ClearError(); // a locked part of the page takes nothing
        return;
    }
    for (const QString &file : files)
        if (CHTMLImg::InsertLocalPicture(document, file) == 0)
            MError::ShowError();
}
