#include "platform/HtmlDocument.h"

#include "document/FaithfulSave.h"

#include "platform/GlyphTable.h"
#include "platform/HtmlSelection.h"
#include "platform/PageScriptCall.h"
#include "platform/WebBrowser.h"
#include "support/MError.h"

HtmlDocument::HtmlDocument(WebBrowser *browser, const QList<int> &framePath)
    : m_browser(browser)
    , m_path(framePath)
{
}

QVariant HtmlDocument::call(const QString &function, QVariantList args, const QString &position) const
{
    if (!m_browser) {
        MError::SetError(PageScriptCall::ScriptError, QStringLiteral("Object variable not set"), position);
        return {};
    }
    QVariantList path;
    for (int i : m_path)
        path.append(i);
    args.prepend(QVariant(path));
    return PageScriptCall::call(m_browser->page(), function, args, position);
}

QVariantMap HtmlDocument::info(const QString &position) const
{
    return call(QStringLiteral("doc.info"), {}, position).toMap();
}

QString HtmlDocument::TypeName() const
{
    return m_path.isEmpty() ? QStringLiteral("HTMLDocument") : QStringLiteral("HTMLWindow2");
}

QString HtmlDocument::title() const { return info(QStringLiteral("HtmlDocument.title")).value(QStringLiteral("title")).toString(); }
QString HtmlDocument::URL() const { return info(QStringLiteral("HtmlDocument.URL")).value(QStringLiteral("URL")).toString(); }
QString HtmlDocument::href() const { return info(QStringLiteral("HtmlDocument.location")).value(QStringLiteral("href")).toString(); }
QString HtmlDocument::pathname() const { return info(QStringLiteral("HtmlDocument.location")).value(QStringLiteral("pathname")).toString(); }
QString HtmlDocument::characterSet() const { return info(QStringLiteral("HtmlDocument.characterSet")).value(QStringLiteral("characterSet")).toString(); }
QString HtmlDocument::readyState() const { return info(QStringLiteral("HtmlDocument.readyState")).value(QStringLiteral("readyState")).toString(); }
QString HtmlDocument::designMode() const { return info(QStringLiteral("HtmlDocument.designMode")).value(QStringLiteral("designMode")).toString(); }
QString HtmlDocument::doctype() const { return info(QStringLiteral("HtmlDocument.doctype")).value(QStringLiteral("doctype")).toString(); }
int HtmlDocument::frameCount() const { return info(QStringLiteral("HtmlDocument.frames")).value(QStringLiteral("frames")).toInt(); }

void HtmlDocument::setTitle(const QString &title)
{
    call(QStringLiteral("doc.set"), {QStringLiteral("title"), title}, QStringLiteral("HtmlDocument.title"));
}

void HtmlDocument::setDesignMode(const QString &mode)
{
    call(QStringLiteral("doc.set"), {QStringLiteral("designMode"), mode}, QStringLiteral("HtmlDocument.designMode"));
}

HtmlElement HtmlDocument::body() const
{
    return HtmlElement(m_browser, call(QStringLiteral("doc.element"), {QStringLiteral("body")}, QStringLiteral("HtmlDocument.body")).toInt());
}

HtmlElement HtmlDocument::documentElement() const
{
    return HtmlElement(m_browser, call(QStringLiteral("doc.element"), {QStringLiteral("documentElement")},
                                       QStringLiteral("HtmlDocument.documentElement")).toInt());
}

QList<HtmlElement> HtmlDocument::all() const
{
    return HtmlElement::fromHandles(m_browser, call(QStringLiteral("doc.all"), {}, QStringLiteral("HtmlDocument.all")));
}

int HtmlDocument::allLength() const
{
    return call(QStringLiteral("doc.count"), {}, QStringLiteral("HtmlDocument.all")).toInt();
}

QList<HtmlElement> HtmlDocument::getElementsByTagName(const QString &tag) const
{
    return HtmlElement::fromHandles(m_browser, call(QStringLiteral("doc.tags"), {tag},
                                                    QStringLiteral("HtmlDocument.getElementsByTagName")));
}

HtmlElement HtmlDocument::getElementById(const QString &id) const
{
    return HtmlElement(m_browser, call(QStringLiteral("doc.byId"), {id}, QStringLiteral("HtmlDocument.getElementById")).toInt());
}

HtmlElement HtmlDocument::createElement(const QString &tag)
{
    return HtmlElement(m_browser, call(QStringLiteral("doc.create"), {tag}, QStringLiteral("HtmlDocument.createElement")).toInt());
}

HtmlElement HtmlDocument::elementFromPoint(int x, int y) const
{
    return HtmlElement(m_browser, call(QStringLiteral("doc.fromPoint"), {x, y}, QStringLiteral("HtmlDocument.elementFromPoint")).toInt());
}

HtmlDocument HtmlDocument::frame(int index) const
{
    QList<int> path = m_path;
    path.append(index);
    return HtmlDocument(m_browser, path);
}

bool HtmlDocument::execCommand(const QString &command, bool showUI, const QVariant &value)
{
    return call(QStringLiteral("doc.exec"), {command, showUI, value}, QStringLiteral("HtmlDocument.execCommand")).toBool();
}

bool HtmlDocument::queryCommandEnabled(const QString &command) const
{
    return call(QStringLiteral("doc.queryEnabled"), {command}, QStringLiteral("HtmlDocument.queryCommandEnabled")).toBool();
}

bool HtmlDocument::queryCommandState(const QString &command) const
{
    return call(QStringLiteral("doc.queryState"), {command}, QStringLiteral("HtmlDocument.queryCommandState")).toBool();
}

long HtmlDocument::execDesign(int command, const QVariant &argument)
{
    const QString position = QStringLiteral("HtmlDocument.execDesign");
    QVariant done;
    switch (command) {
    case RespectVisibilityInDesign:
        // Respected, a hidden layer stays hidden while the page is edited,
        // and the Visibility pane shows it; not respected, the look shows
        // every hidden element.
        done = call(QStringLiteral("look.design"), {QStringLiteral("visibility"), !argument.toBool()}, position);
        break;
    case ShowZeroBorderAtDesignTime:
        // The editor sends a two-byte 0 here and wants the borders shown;
        // only an explicit false switches them off again.
        done = call(QStringLiteral("look.design"),
                    {QStringLiteral("zeroBorders"), argument.typeId() == QMetaType::Bool ? argument.toBool() : true},
                    position);
        break;
    case EmptyGlyphTable:
        done = call(QStringLiteral("look.glyphs"), {QVariantList()}, position);
        break;
    case AddToGlyphTable:
        done = call(QStringLiteral("look.glyphs"), {GlyphTable::parseRows(argument.toString())}, position);
        break;
    default:
        MError::SetError(PageScriptCall::ScriptError, QStringLiteral("Unknown command %1.").arg(command), position);
        return 0;
    }
    return done.toBool() ? 1 : 0;
}

long HtmlDocument::setHatched(bool on)
{
    return call(QStringLiteral("look.design"), {QStringLiteral("hatched"), on}, QStringLiteral("HtmlDocument.setHatched")).toBool() ? 1 : 0;
}

HtmlSelection HtmlDocument::selection() const
{
    return HtmlSelection(*this);
}

QList<StyleSheetInfo> HtmlDocument::styleSheets() const
{
    QList<StyleSheetInfo> out;
    for (const QVariant &v : call(QStringLiteral("doc.styleSheets"), {}, QStringLiteral("HtmlDocument.styleSheets")).toList()) {
        const QVariantMap m = v.toMap();
        out.append({m.value(QStringLiteral("href")).toString(), m.value(QStringLiteral("readOnly")).toBool(),
                    m.value(QStringLiteral("selectors")).toStringList()});
    }
    return out;
}

QString HtmlDocument::serialize() const
{
    return call(QStringLiteral("doc.serialize"), {}, QStringLiteral("HtmlDocument.serialize")).toString();
}

// The rows and cells the editor's commands put in carry the save's mark
// for them while the page is read (see the page runtime's snapshot).
QString HtmlDocument::snapshot() const
{
    return call(QStringLiteral("doc.snapshot"), {QLatin1String(FaithfulSave::AddedMark)}, QStringLiteral("HtmlDocument.snapshot"))
        .toString();
}

long HtmlDocument::sealScript(QStringList *ids)
{
    const QVariant n = call(QStringLiteral("doc.sealScript"), {}, QStringLiteral("HtmlDocument.sealScript"));
    if (!n.isValid())
        return -1;
    if (ids)
        *ids = n.toStringList();
    return n.toList().size();
}

long HtmlDocument::setAttributeOnTags(const QString &tag, const QString &name, const QString &value)
{
    const QVariant n = call(QStringLiteral("bulk.setAttrOnTags"), {tag, name, value}, QStringLiteral("HtmlDocument.setAttributeOnTags"));
    return n.isValid() ? n.toLongLong() : -1;
}

long HtmlDocument::removeAttributesEverywhere(const QStringList &names)
{
    const QVariant n = call(QStringLiteral("bulk.removeAttrs"), {names}, QStringLiteral("HtmlDocument.removeAttributesEverywhere"));
    return n.isValid() ? n.toLongLong() : -1;
}

long HtmlDocument::keyAndStrip(const QString &tag, const QString &keyName, const QStringList &names)
{
    const QVariant n = call(QStringLiteral("bulk.keyAndStrip"), {tag, keyName, names}, QStringLiteral("HtmlDocument.keyAndStrip"));
    return n.isValid() ? n.toLongLong() : -1;
}

QList<HtmlDocument::PendingBackground> HtmlDocument::stripEditMarks(bool &ok)
{
    const QVariant result = call(QStringLiteral("bulk.stripEditMarks"), {}, QStringLiteral("HtmlDocument.stripEditMarks"));
    ok = result.isValid();
    QList<PendingBackground> pending;
    for (const QVariant &v : result.toList()) {
        const QVariantMap m = v.toMap();
        pending.append({HtmlElement(m_browser, m.value(QStringLiteral("element")).toInt()),
                        m.value(QStringLiteral("relativepath")).toString(), m.value(QStringLiteral("uploadpath")).toString(),
                        m.value(QStringLiteral("background")).toString(), m.value(QStringLiteral("bgbytad")).toString()});
    }
    return pending;
}

long HtmlDocument::stripLockMarks(const QStringList &styleProperties)
{
    const QVariant n = call(QStringLiteral("bulk.stripLockMarks"), {styleProperties}, QStringLiteral("HtmlDocument.stripLockMarks"));
    return n.isValid() ? n.toLongLong() : -1;
}

long HtmlDocument::holdChanges()
{
    return call(QStringLiteral("bulk.hold"), {}, QStringLiteral("HtmlDocument.holdChanges")).toBool() ? 1 : 0;
}

long HtmlDocument::undoHeldChanges()
{
    const QVariant n = call(QStringLiteral("bulk.undoHeld"), {}, QStringLiteral("HtmlDocument.undoHeldChanges"));
    return n.isValid() && n.toLongLong() >= 0 ? 1 : 0;
}

QVariantMap HtmlDocument::contextTarget(int x, int y) const
{
    return call(QStringLiteral("objects.menuTarget"), {x, y}, QStringLiteral("HtmlDocument.contextTarget")).toMap();
}

HtmlElement HtmlDocument::flowParentNear(const HtmlElement &element, int x, int y) const
{
    return HtmlElement(m_browser, call(QStringLiteral("objects.flowParent"), {element.handle(), x, y},
                                       QStringLiteral("HtmlDocument.flowParentNear")).toInt());
}

QVariantMap HtmlDocument::styleAtSelection() const
{
    return call(QStringLiteral("style.atSelection"), {}, QStringLiteral("HtmlDocument.styleAtSelection")).toMap();
}

QVariantMap HtmlDocument::styleAtPoint(int x, int y) const
{
    return call(QStringLiteral("style.atPoint"), {x, y}, QStringLiteral("HtmlDocument.styleAtPoint")).toMap();
}

QVariantMap HtmlDocument::setSelectionFontSize(const QString &size)
{
    return call(QStringLiteral("style.fontSize"), {size}, QStringLiteral("HtmlDocument.setSelectionFontSize")).toMap();
}

QVariantMap HtmlDocument::styleKindAt(int x, int y, const QStringList &selectors) const
{
    return call(QStringLiteral("style.kindAt"), {x, y, selectors}, QStringLiteral("HtmlDocument.styleKindAt")).toMap();
}
