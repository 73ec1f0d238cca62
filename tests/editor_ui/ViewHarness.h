#pragma once

#include "content/ui/BookShowView.h"
#include "tests/content/CourseOnDisk.h"
#include "tests/content_ui/RecordingHost.h"
#include "tests/support/WindowHelp.h"

/// A course on disk, and a frame that takes notes.
class CViewWorld : public CCourseOnDisk {
public:
    CRecordingHost Host;

    /// A node under the root with an editor page of this text.
    std::unique_ptr<CBookNode> MakePage(const QString& strTitle, const QByteArray& html) {
        auto pNode = CBookNode::Root(*pCourse)->AddChild(strTitle);
        pNode->CreateEditorPage(0);
        Folder.Write(NodePath(pNode->GetId(), u"Content.htm"_s), html);
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
