#pragma once

#include "content/ui/BookShowView.h"
#include "platform/base/People.h"

class IVideoMaker;
class QLabel;
class QPlainTextEdit;
class QPushButton;

/// Shown when no course is open: nothing but its colour. The windows of the course that was open go.
class CEmptyView : public CBookShowView {
    Q_OBJECT
public:
    CEmptyView(INodeViewHost& host, QWidget* pParent);
    void ShowNode() override;
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

/// Offers what can be done with a file that the browser doesn't show.
class CToolBtnView : public CBookShowView {
    Q_OBJECT
public:
    CToolBtnView(INodeViewHost& host, Torvane::Dialog::MFC::IPeople& people, IVideoMaker& videos,
                 QWidget* pParent);
    void ShowNode() override;

protected:
    bool event(QEvent* pEvent) override;
    void keyPressEvent(QKeyEvent* pEvent) override;

private:
    QPushButton* ButtonFor(const QKeyEvent& key) const;
    void PreviewVideo(CBookNode& node);
    void RecordAgain(CBookNode& node);
    QPushButton* AddButton(const QString& strName, void (CToolBtnView::*pStep)(CBookNode&));
    void ShowCard();
    void Download(CBookNode& node);
    void Edit(CBookNode& node);
    void ConvertToHtml(CBookNode& node);

    Torvane::Dialog::MFC::IPeople& m_people;
    IVideoMaker& m_videos;
    QLabel* m_pKind;
    QLabel* m_pFileName;
    QPlainTextEdit* m_pComment;
    QPushButton* m_pDownload;
    QPushButton* m_pEdit;
    QPushButton* m_pToHtml;
};
