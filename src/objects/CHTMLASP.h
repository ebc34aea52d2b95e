#pragma once

#include <QString>

class CASPFilter;
class QWidget;

// A right click on a server script block with ASP editing allowed: the
// block's source in frmASPDialog, and what the user saves there in the
// filter's override table, which the next Save writes to the server in
// place of the block. The page in the engine doesn't change. No state.
class CHTMLASP
{
public:
    // strASPID_p holds the block's start mark ("keldaspIN#" and five
    // digits). 1 the source was set; -1 nothing set (cancelled, or a block
    // the filter doesn't know, which is said to the user).
    long Init(CASPFilter *CASPFilter_p, const QString &strASPID_p, QWidget *parent = nullptr);
};
