#pragma once

#include <QString>
#include <QStringList>
#include <QStringView>

// The last check before a page goes to the server: the outgoing text must
// carry the original's server script, every block, include and runat=server
// element, character for character and in the same order. It reads both
// texts on its own, apart from the code that made the outgoing one, so a
// fault there can't hide from it. Texts are one character per byte.
class ScriptGuard
{
public:
    // The script of a page, in order of position.
    static QStringList Pieces(QStringView page);
    // True when the outgoing page keeps the original's script; otherwise
    // `difference` says what was lost or changed first. Beyond the
    // original's script, in its order, the outgoing page may hold further
    // copies only of the pieces in `copies` (a block the user pasted), and
    // may lack only the pieces in `removed` (blocks the user deleted), each
    // as often as it is listed there.
    static bool Keeps(QStringView original, QStringView outgoing, QString &difference,
                      const QStringList &copies = {}, const QStringList &removed = {});
};
