#pragma once

#include "content/ui/BookShowView.h"
#include "platform/base/People.h"

class IVideoMaker;

/// The views that show a node without editing it. Made by the main frame.
namespace DisplayViews {

CBookShowView* MakeShowContentView(INodeViewHost& host, QWidget* pParent);
CBookShowView* MakeChildrenNodeListView(INodeViewHost& host, QWidget* pParent);
CBookShowView* MakeToolBtnView(INodeViewHost& host, Torvane::Dialog::MFC::IPeople& people,
                               IVideoMaker& videos, QWidget* pParent);
CBookShowView* MakeNothingView(INodeViewHost& host, QWidget* pParent);
CBookShowView* MakePromptView(INodeViewHost& host, QWidget* pParent);
CBookShowView* MakeEmptyView(INodeViewHost& host, QWidget* pParent);

} // namespace DisplayViews
