#pragma once

#include "content/ui/BookShowView.h"

class QLabel;
class QPushButton;

/// Shown when no course is open: nothing but its colour.
class CEmptyView : public CBookShowView {
    Q_OBJECT
public:
    CEmptyView(INodeViewHost& host, QWidget* pParent);
    void ShowNode() override {}
};

/// Invites to give an empty node its content.
class CNothingView : public CBookShowView {
    Q_OBJECT
public:
    CNothingView(INodeViewHost& host, QWidget* pParent);
    void ShowNode() override {}
};

/// Tells what to wait for while the content shows or is edited elsewhere.
class CPromptView : public CBookShowView {
    Q_OBJECT
public:
    CPromptView(INodeViewHost& host, QWidget* pParent);
    void ShowNode() override;

private:
    void Refresh();

    QLabel* m_pText;
    QPushButton* m_pRefresh;
};
