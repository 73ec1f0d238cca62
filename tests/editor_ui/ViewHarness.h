#pragma once

#include "content/ui/BookShowView.h"
#include "tests/content/CourseOnDisk.h"

#include <QApplication>
#include <QInputMethodEvent>
#include <QtTest/QTest>

/// Remembers what a view asks of the main frame, and does nothing of it.
class CRecordingHost : public INodeViewHost {
public:
    struct Shown {
        EViewKind kind;
        int nParam;
    };
    std::vector<Shown> Views;
    QList<qint32> Selected;
    QList<int> Commands;

    bool ShowNodeView(EViewKind kind, CBookNode*, int nParam) override {
        Views.push_back({kind, nParam});
        return true;
    }
    bool LeaveCurrentView(bool) override { return true; }
    bool IsEditorShowing() const override { return false; }
    void SelectNode(qint32 nId) override { Selected.append(nId); }
    void RunCommand(int nId) override { Commands.append(nId); }
};

/// A course on disk with the delivered pictures.
class CViewWorld : public CCourseOnDisk {
public:
    CRecordingHost Host;

    CViewWorld() {
        const QString strTo = Folder.Native(QStringLiteral("程序\\SysData\\Images"));
        QDir().mkpath(strTo);
        QDir().rmdir(strTo);
        QFile::link(QStringLiteral(VOREL_DELIVERED_DATA "/Images"), strTo);
    }

    /// A node under the root with an editor page of this text.
    std::unique_ptr<CBookNode> MakePage(const QString& strTitle, const QByteArray& html) {
        auto pNode = CBookNode::Root(*pCourse)->AddChild(strTitle);
        pNode->CreateEditorPage(0);
        Folder.Write(NodePath(pNode->GetId(), QStringLiteral("Content.htm")), html);
        return pNode;
    }
};

inline void ShowOnScreen(QWidget& widget) {
    widget.resize(900, 600);
    widget.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&widget));
    widget.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&widget));
}
