// module_app.cpp - the module's application object
#include <afxwin.h>

namespace pyxen {

namespace {

/// Makes the module known to its window classes; there is one, before any window is made.
class CKVNPyxenApp : public CWinApp {};

CKVNPyxenApp theApp;

} // namespace

} // namespace pyxen
