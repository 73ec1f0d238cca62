#include "video/Recording.h"
#include "content/ContentBuilder.h"
#include "content/VideoMaker.h"
#include "foundation/Exceptions.h"
#include "foundation/SysInfo.h"
#include "tests/content/CourseOnDisk.h"
#include "video/VideoKey.h"

namespace {

class RecordingTest : public ::testing::Test {
protected:
    void SetRecorder(const QByteArray& script) {
        const QString strPath = m_disk.Folder.Native(u"程序\\VRM\\VorelRecorder"_s);
        m_disk.Folder.Write(u"程序\\VRM\\VorelRecorder"_s, "#!/bin/sh\n" + script);
        QFile::setPermissions(strPath, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }
    bool Create(bool bHasPlayer = true, bool bHasEncoder = true) {
        CVideoMaker maker(m_disk.People, bHasPlayer, bHasEncoder);
        CNodeFileParams params;
        params.Kind = EContentKind::Video;
        return CNodeContentBuilder(
                   *m_pNode, m_disk.People, [] { return true; }, &maker)
            .Create(params);
    }

    CCourseOnDisk m_disk;
    std::unique_ptr<CBookNode> m_pNode = CBookNode::Root(*m_disk.pCourse)->AddChild(u"录像"_s);
};

// Paths with blanks and Chinese reach the recorder whole, and so do the numbers behind the tabs.
TEST_F(RecordingTest, TheRecordersFilmBecomesTheNodesContent) {
    SetRecorder("[ $# = 3 ] || exit 1\nd=$(dirname \"$1\")\n"
                "printf '%s|%s' \"$2\" \"$3\" > \"$d/key\"; cp \"$1\" \"$d/given.prj\"\n"
                "printf '[OutputStream]\\r\\nFileName=lecture\\r\\n' >> \"$1\"; : > \"$d/Lecture.ASF\"\n");
    ASSERT_TRUE(Create());
    EXPECT_EQ(m_pNode->GetType(), NodeType::c_nVideo);
    const QString strFolder = m_pNode->GetContentPath();
    EXPECT_TRUE(m_pNode->GetStoredPath().startsWith(u"N%1\\20"_s.arg(m_pNode->GetId())));
    const auto key = CVideoKey(CSysInfo::Instance().GetSchoolName()).GetRecorderKey();
    ASSERT_TRUE(key);
    EXPECT_EQ(ReadFileBytes(strFolder + u"\\key"_s), key->Modulus + '|' + QByteArray::number(key->nSeed));
    const CCourseInfo& info = m_disk.pCourse->GetInfo();
    EXPECT_EQ(ReadFileBytes(strFolder + u"\\given.prj"_s),
              CodePage::Encode(QString(u"[Project]\r\nName=Template\r\n[Course]\r\nName="_s + info.Name +
                                       u"\r\nTeacherName="_s + info.TeacherName + u"\r\n"_s)));
    EXPECT_EQ(FilmPath(strFolder), strFolder + u"\\lecture.asf"_s);
}

// A recorder that was ended by force leaves what it has; the next one for the node goes on with it.
TEST_F(RecordingTest, WhatWasKeptIsOffered) {
    auto& people = m_disk.People;
    SetRecorder("echo film > \"$(dirname \"$1\")/recorded.part\"; kill -9 $$\n");
    people.ExpectBeginning(u"创建视频失败！\n\n已录制的内容保留在\n"_s);
    EXPECT_FALSE(Create());
    SetRecorder("d=$(dirname \"$1\"); mv \"$d/recorded.part\" \"$d/a.asf\"\n");
    people.ExpectBeginning(u"上次为本栏目录制的视频还没有保存到栏目中：\n"_s,
                           CScriptedPeople::BoxAnswer::Yes);
    EXPECT_TRUE(Create());
    EXPECT_EQ(ReadFileBytes(m_pNode->GetContentPath() + u"\\a.asf"_s), "film\n");
    EXPECT_FALSE(
        QFileInfo::exists(m_disk.Folder.Native(CCourseOnDisk::NodePath(m_pNode->GetId()) + u"..\\~"_s)));
}

TEST_F(RecordingTest, WhatStandsInTheWayIsTold) {
    auto& people = m_disk.People;
    const QString strMissing = u"系统检测到您的计算机没有安装Windows Media %1 9, 无法启动视频制作工具。"_s;
    people.Expect(strMissing.arg(u"Player"_s));
    EXPECT_FALSE(Create(false, false));
    people.Expect(strMissing.arg(u"Encoder"_s));
    EXPECT_FALSE(Create(true, false));
    people.Expect(u"启动视频录制工具失败！"_s);
    people.Expect(u"创建视频失败！"_s);
    EXPECT_FALSE(Create());
    // Left without recording: in silence but for the step itself, and nothing stays behind.
    SetRecorder("exit 0\n");
    people.Expect(u"创建视频失败！"_s);
    EXPECT_FALSE(Create());
    EXPECT_FALSE(m_pNode->HasContent());
    EXPECT_FALSE(
        QFileInfo::exists(m_disk.Folder.Native(CCourseOnDisk::NodePath(m_pNode->GetId()) + u"..\\~"_s)));
}

} // namespace
