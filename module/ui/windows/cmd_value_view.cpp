// cmd_value_view.cpp - the editor of commands
#include "ui/windows/cmd_value_view.h"

#include "res/resource.h"

using namespace pyxen;

IMPLEMENT_DYNCREATE(CCmdValueView, CValueView)

BEGIN_MESSAGE_MAP(CCmdValueView, CValueView)
ON_BN_CLICKED(IDC_CMD_RUN, &CCmdValueView::OnApply)
END_MESSAGE_MAP()

CCmdValueView::CCmdValueView() : CValueView(IDD_CMD_VALUE) {}

void CCmdValueView::SetFeatureName(const char* name) {
    ShowText(IDC_CMD_RUN, name);
}
