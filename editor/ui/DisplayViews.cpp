#include "editor/ui/DisplayViews.h"

#include "editor/ui/CardViews.h"
#include "editor/ui/ChildrenNodeListView.h"
#include "editor/ui/ShowContentView.h"

namespace DisplayViews {

CBookShowView* MakeShowContentView(INodeViewHost& host, QWidget* pParent) {
    return new CShowContentView(host, pParent);
}

CBookShowView* MakeChildrenNodeListView(INodeViewHost& host, QWidget* pParent) {
    return new CChildrenNodeListView(host, pParent);
}

CBookShowView* MakeToolBtnView(INodeViewHost& host, Torvane::Dialog::MFC::IPeople& people,
                               IVideoMaker& videos, QWidget* pParent) {
    return new CToolBtnView(host, people, videos, pParent);
}

CBookShowView* MakeNothingView(INodeViewHost& host, QWidget* pParent) {
    return new CNothingView(host, pParent);
}

CBookShowView* MakePromptView(INodeViewHost& host, QWidget* pParent) {
    return new CPromptView(host, pParent);
}

CBookShowView* MakeEmptyView(INodeViewHost& host, QWidget* pParent) {
    return new CEmptyView(host, pParent);
}

} // namespace DisplayViews
