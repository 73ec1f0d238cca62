// Every kind of content by its row and its files, what a failure leaves, and folders that become nodes.
#include "content/ContentBuilder.h"
#include "content/ImportPlan.h"
#include "content/VideoMaker.h"
#include "foundation/IniFile.h"
#include "foundation/TextFile.h"
#include "tests/content/TreeOnDisk.h"
#include "tests/support/Environment.h"

#include <fcntl.h>
#include <unistd.h>

namespace {

/// A new name is the time, to the minute, and the extension.
const QRegularExpression c_newName(u"\\b20\\d{10}\\b"_s);

class ContentBuilderTest : public testing::Test {
protected:
    CCourseOnDisk m_disk{{}, CTempFolder::InMemory()};
    std::unique_ptr<CBookNode> m_pNode = CBookNode::Root(*m_disk.pCourse)->AddChild(u"章"_s);

    bool Create(const CNodeFileParams& params, IVideoMaker* pVideos = nullptr) {
        return CNodeContentBuilder(
                   *m_pNode, m_disk.People, [] { return true; }, pVideos)
            .Create(params);
    }
    QString Source(const QString& strBelow) const { return m_disk.Folder.Path(u"来\\"_s + strBelow); }
    void Write(const QString& strBelow, const QByteArray& bytes = "x") const {
        m_disk.Folder.Write(u"来\\"_s + strBelow, bytes);
    }
    /// What stands in a node's folder, new names left out.
    QString FilesOf(qint32 nId) const {
        return m_disk.Folder.Tree(m_disk.NodePath(nId).chopped(1)).replace(c_newName, u"NEW"_s);
    }
    QString Files() const { return FilesOf(m_pNode->GetId()); }
    /// The row and the files, new names and the node's own number left out.
    QString Left() {
        CBookDatabase& store = m_disk.Store();
        const qint32 nId = m_pNode->GetId();
        const QString strRow = u"%1 %2 %3 [%4] [%5]"_s.arg(store.GetNode(nId).Type)
                                   .arg(store.GetPath(nId), QString::number(store.GetOpenType(nId)),
                                        store.GetFileName(nId), store.GetComment(nId));
        EXPECT_EQ(store.GetField(nId, u"Size"_s).toDouble(),
                  Torvane::File::GetFolderSize(m_pNode->GetFolder()));
        EXPECT_EQ(m_pNode->GetType(), store.GetNode(nId).Type);
        EXPECT_EQ(m_disk.Folder.Tree(m_disk.NodePath(0).section(u'\\', 0, -3)).count(u'~'), 0)
            << "what was built beside is gone";
        QString strLeft = strRow + u" | "_s + Files();
        return strLeft.replace(c_newName, u"NEW"_s).replace(u"N%1"_s.arg(nId), u"N#"_s);
    }
    static CNodeFileParams Of(EContentKind kind, const QString& strSource = {}, const QString& strMore = {}) {
        CNodeFileParams params;
        params.Kind = kind;
        params.OpenType = 2;
        params.ExternalFile = params.SiteFolder = params.LinkUrl = params.SiteLinkUrl =
            params.CoursewareFolder = params.ImportFolder = strSource;
        params.Comment = params.SiteHomePage = params.ImportFilter = strMore;
        return params;
    }
};

TEST_F(ContentBuilderTest, EachKindLeavesItsRowAndItsFiles) {
    const QString strSources =
        u"a.txt 无扩展名 p.htm 带.HTM 带.files\\i.png 稿.html 稿.files\\fullscreen.htm 稿.files\\pres.xml "
        u"稿.files\\.hidden b.doc site\\index.htm site\\sub\\home.htm ware\\b.htm ware\\A.HTM ware\\a.cml"_s;
    for (const QString& strSource : strSources.split(u' '))
        Write(strSource);
    for (const QString& strName :
         {u"Template.doc"_s, u"Template.xls"_s, u"TemplateDoc.htm"_s, u"torvaneframe.htm"_s})
        m_disk.Folder.Write(u"程序\\SysData\\OfficeTemplate\\"_s + strName, "t");
    CSysInfo::Instance().SetQueryUserSaveOfficeAsHtml(false);
    const auto office = [](EOfficeKind kind, bool bHtml) {
        CNodeFileParams params = Of(EContentKind::ExternalEditor);
        params.OfficeKind = kind;
        params.SaveAsHtml = bHtml;
        return params;
    };
    using enum EContentKind;
    const QString strNode = m_disk.Folder.Path(m_disk.NodePath(3, u"Content.htm"_s));
    m_disk.Folder.Write(m_disk.NodePath(3, u"Content.htm"_s), "p");
    const std::pair<CNodeFileParams, QString> cases[] = {
        {Of(EditorPage), u"0 N#\\Content.htm 2 [] [] | Content.htm res/"_s},
        {Of(ExternalFile, Source(u"a.txt"_s), u"注"_s), u"1 N#\\NEW.txt 2 [a.txt] [注] | NEW.txt"_s},
        {Of(ExternalFile, Source(u"无扩展名"_s)), u"1 N#\\NEW 2 [无扩展名] [] | NEW"_s},
        {Of(ExternalFile, Source(u"b.doc"_s)), u"1 N#\\NEW.doc 2 [b.doc] [] | NEW.doc"_s},
        {Of(ExternalFile, Source(u"p.htm"_s)), u"1 N#\\NEW.htm 2 [p.htm] [] | NEW.htm"_s},
        {Of(ExternalFile, Source(u"带.HTM"_s)),
         u"1 N#\\带.HTM 2 [带.HTM] [] | NEW.HTM 带.HTM 带.files/ 带.files/i.png"_s},
        {Of(ExternalFile, Source(u"稿.html"_s)),
         u"1 N#\\稿.files\\torvaneframe.htm 2 [稿.html] [] | NEW.html 稿.files/ 稿.files/fullscreen.htm "
         u"稿.files/pres.xml 稿.files/torvaneframe.htm 稿.html"_s},
        {office(EOfficeKind::Word, false), u"1 N#\\NEW.doc 2 [] [] | NEW.doc"_s},
        {office(EOfficeKind::Word, true), u"1 N#\\NEW.htm 2 [] [] | NEW.htm"_s},
        {office(EOfficeKind::Excel, false), u"1 N#\\NEW.xls 2 [] [] | NEW.xls"_s},
        {Of(Site, Source(u"site"_s), Source(u"site\\sub\\home.htm"_s)),
         u"2 N#\\NEW\\sub\\home.htm 2 [] [] | NEW/ NEW/index.htm NEW/sub/ NEW/sub/home.htm"_s},
        {Of(Courseware, Source(u"ware"_s)),
         u"5 N#\\NEW\\A.HTM 2 [] [] | NEW/ NEW/A.HTM NEW/a.cml NEW/b.htm"_s},
        {Of(ExternalLink, u"http://a/N3\\X"_s), u"3 http://a/N3\\X 2 [] [] | "_s},
        {Of(InSiteLink, u"file:///"_s + strNode + u"#Abc"_s), u"6 n3\\content.htm#abc 2 [] [] | "_s},
        {Of(InSiteLink, u"N3\\x/y"_s), u"6 N3\\x/y 2 [] [] | "_s},
        {Of(InSiteLink, strNode), u"6 n3\\content.htm 2 [] [] | "_s},
    };
    for (const auto& [params, strLeft] : cases) {
        EXPECT_TRUE(Create(params));
        EXPECT_EQ(Left(), strLeft);
    }
}

TEST_F(ContentBuilderTest, AFailureOrACancelCostsNothing) {
    Write(u"a.txt"_s);
    Write(u"site\\index.htm"_s);
    Write(u"site\\.geheim\\home.htm"_s);
    Write(u"ware\\a.cml"_s);
    Write(u"zu.txt"_s);
    Write(u"b.doc"_s);
    m_pNode->CreateEditorPage(0);
    const QString strBefore = Left();
    ::chmod(m_disk.Folder.Native(u"来\\zu.txt"_s).toUtf8().constData(), 0);
    m_disk.Folder.MakePipe(u"来\\pipe.txt"_s);
    CSysInfo::Instance().SetQueryUserSaveOfficeAsHtml(false);
    using enum EContentKind;
    const bool bRoot = ::geteuid() == 0;
    const std::pair<CNodeFileParams, QString> cases[] = {
        {Of(ExternalFile, Source(u"fort.txt"_s)), u"拷贝文件出错!"_s},
        {Of(ExternalFile, Source(u"fort.doc"_s)), u"拷贝文件夹失败!"_s},
        {Of(ExternalFile, Source(u"pipe.txt"_s)), u"拷贝文件出错!"_s},
        {Of(bRoot ? None : ExternalFile, Source(u"zu.txt"_s)),
         bRoot ? u"参数错误！"_s : u"拷贝文件出错!\n没有访问权限。"_s},
        {Of(ExternalEditor), u"拷贝文件失败！"_s},
        {Of(Site, Source(u"fort"_s), Source(u"fort\\index.htm"_s)), u"拷贝文件夹失败！"_s},
        {Of(Site, Source(u"site"_s), Source(u"site\\.geheim\\home.htm"_s)), u"拷贝文件夹失败！"_s},
        {Of(Site, Source(u"site"_s), Source(u"site2\\index.htm"_s)),
         u"站点首页不在站点目录内，请您重新选择!"_s},
        {Of(Courseware, Source(u"ware"_s)), u"查找首页失败！"_s},
        {Of(Video), u"启动视频录制工具失败！"_s},
        {Of(InSiteLink, Source(u"a.txt"_s)), u"对不起，链接地址不能为空！请您选择。"_s},
        {Of(InSiteLink, u"file:///"_s + Source(u"a.txt#b"_s)), u"对不起，链接地址不能为空！请您选择。"_s},
        {Of(Site, Source(u"a.txt"_s), Source(u"a.txt\\index.htm"_s)), u"拷贝文件夹失败！"_s},
        {Of(Folder, Source(u"fort"_s)),
         u"无法读取文件夹%1，导入失败！"_s.arg(m_disk.Folder.Native(u"来/fort"_s))},
    };
    for (const auto& [params, strMessage] : cases) {
        m_disk.People.Expect(strMessage);
        EXPECT_FALSE(Create(params));
        EXPECT_EQ(Left(), strBefore) << strMessage;
    }
    // The store refuses when the files stand already.
    SQLite::Database raw(Platform::ToNativeExact(m_disk.pCourse->GetPaths().GetDatabasePath()).toStdString(),
                         SQLite::OPEN_READWRITE);
    raw.exec("ALTER TABLE Book RENAME TO Away");
    m_disk.People.Expect(u"IDispatch error #3092"_s);
    EXPECT_FALSE(Create(Of(ExternalFile, Source(u"a.txt"_s))));
    raw.exec("ALTER TABLE Away RENAME TO Book");
    EXPECT_EQ(Left(), strBefore);
}

TEST_F(ContentBuilderTest, WhatAKillHasLeftIsPutInOrder) {
    // What the row leads to, what stands where, and what is to stand there: the node's folder, the one beside
    // it, and the one that an exchange in steps lays aside.
    const struct {
        QString strRow, strBefore, strAfter;
    } cases[] = {
        {u"old"_s, u"N#/new ~/N#/old"_s, u"N#/old"_s},
        {u"old"_s, u"N#/old ~/N#/half"_s, u"N#/old"_s},
        {u"new"_s, u"N#/new ~/N#/old"_s, u"N#/new"_s},
        {u"old"_s, u"~/N#/new ~/N#.old/old"_s, u"N#/old"_s},
        {u"old"_s, u"N#/new ~/N#.old/old"_s, u"N#/old"_s},
        {u"new"_s, u"~/N#/new ~/N#.old/old"_s, u"N#/new"_s},
        {{}, u"~/N#/new ~/N#.old/old"_s, u"N#/old"_s},
        {{}, u"~/N#/half"_s, {}},
        {u"gone"_s, u"N#/a ~/N#/b ~/N#.old/c"_s, u"N#/a ~/N#/b ~/N#.old/c"_s},
    };
    const QString strAll = m_disk.NodePath(0).section(u'\\', 0, -3);
    for (const auto& [strRow, strBefore, strAfter] : cases) {
        for (const bool bAtOpening : {true, false}) {
            const auto pNode = CBookNode::Root(*m_disk.pCourse)->AddChild(u"节"_s);
            const QString strNode = u"N%1"_s.arg(pNode->GetId());
            m_disk.Store().SetContent(pNode->GetId(),
                                      {1, strRow.isEmpty() ? strRow : strNode + u'\\' + strRow, 0, {}, {}});
            QDir(Platform::ToNativeExact(pNode->GetFolder())).removeRecursively();
            for (QString strFile : strBefore.split(u' '))
                m_disk.Folder.Write(strAll + u'\\' + strFile.replace(u"N#"_s, strNode).replace(u'/', u'\\'),
                                    "x");
            if (bAtOpening)
                MendNodeFolders(*m_disk.pCourse, nullptr);
            else
                CContentStage{*pNode};
            QStringList left;
            for (const QString& strFolder : {u"N#"_s, u"~/N#"_s, u"~/N#.old"_s}) {
                const QString strFiles =
                    m_disk.Folder.Tree(strAll + u'\\' + QString(strFolder).replace(u"N#"_s, strNode));
                if (!strFiles.isEmpty())
                    left.append(strFolder + u'/' + strFiles);
            }
            EXPECT_EQ(left.join(u' '), strAfter) << strBefore << bAtOpening;
        }
    }
    // Nothing of one node's is taken along by another's.
    const QString strOther = strAll + u"\\~\\N99999\\only copy"_s;
    m_disk.Folder.Write(strOther, "x");
    { const CContentStage stage(*m_pNode); }
    EXPECT_TRUE(QFile::exists(m_disk.Folder.Native(strOther)));
    // The store refused, and the folders could not be exchanged back.
    m_pNode->CreateEditorPage(0);
    const QString strBefore = Files();
    CContentStage(*m_pNode).Exchange();
    EXPECT_EQ(Files(), QString());
    { const CContentStage next(*m_pNode); }
    EXPECT_EQ(Files(), strBefore);
}

TEST_F(ContentBuilderTest, WithoutAConverterThePersonIsToldWhatToInstall) {
    const CEnvironment environment{{"PATH", m_disk.Folder.Native(u"leer"_s)}};
    const QString strInstall =
        u"系统没有检测到转换Office文件所需的程序。请您安装以下软件包后重试：\n"
        u"libreoffice-writer-nogui\nlibreoffice-calc-nogui\nlibreoffice-impress-nogui\npoppler-utils"_s;
    CSysInfo::Instance().SetQueryUserSaveOfficeAsHtml(false);
    CSysInfo::Instance().SetSaveOfficeAsHtml(true);
    Write(u"a.txt"_s);
    const auto copy = [&](const QString& strName, const QString& strTarget) {
        m_disk.Folder.MakeFolder(strTarget.section(u'\\', 0, -2));
        QFile::copy(QStringLiteral(VOREL_DELIVERED_DATA "/OfficeTemplate/") + strName,
                    m_disk.Folder.Native(strTarget));
    };
    copy(u"Template.doc"_s, u"来\\b.doc"_s);
    copy(u"Template.ppt"_s, u"程序\\SysData\\OfficeTemplate\\Template.ppt"_s);
    m_pNode->CreateEditorPage(0);
    const QString strBefore = Left();
    CNodeFileParams slides = Of(EContentKind::ExternalEditor);
    slides.OfficeKind = EOfficeKind::PowerPoint;
    slides.SaveAsHtml = true;
    const std::pair<CNodeFileParams, QString> cases[] = {
        {slides, u"另存为HTML失败！\n"_s},
        {Of(EContentKind::ExternalFile, Source(u"b.doc"_s)), u"另存为HTML时发生异常!\n"_s},
        {Of(EContentKind::Folder, Source({}), u"*.*"_s), u"另存为HTML时发生异常!\n"_s},
    };
    for (const auto& [params, strMessage] : cases) {
        m_disk.People.Expect(strMessage + strInstall);
        EXPECT_FALSE(Create(params));
        EXPECT_EQ(Left(), strBefore);
    }
    EXPECT_TRUE(m_pNode->GetChildren().isEmpty()) << "said before anything is made";
}

TEST_F(ContentBuilderTest, AnOpenedFileKeepsItsSizeTrue) {
    // No program and no desktop of this machine may come up.
    const CEnvironment environment{{"XDG_DATA_HOME", m_disk.Folder.Native(u"a"_s)},
                                   {"XDG_DATA_DIRS", m_disk.Folder.Native(u"b"_s)},
                                   {"DBUS_SESSION_BUS_ADDRESS", u"unix:path=/nowhere"_s}};
    Write(u"a.txt"_s, "old");
    ASSERT_TRUE(Create(Of(EContentKind::ExternalFile, Source(u"a.txt"_s))));
    m_pNode->OpenExternalFile();
    const auto size = [&] { return m_disk.Store().GetField(m_pNode->GetId(), u"Size"_s).toInt(); };
    QFile file(Platform::ToNativeExact(m_pNode->GetContentPath()));
    EXPECT_TRUE(file.open(QIODevice::Append) && file.write("more") == 4);
    file.close();
    EXPECT_SOON(size() == 7);
    // The watch goes on over content that takes the old one's place.
    ASSERT_TRUE(Create(Of(EContentKind::ExternalFile, Source(u"a.txt"_s))));
    EXPECT_EQ(size(), 3);
    m_disk.Folder.Write(m_disk.NodePath(m_pNode->GetId(), u"more.txt"_s), "x");
    EXPECT_SOON(size() == 4);
    // It may outlive the node's row, and the open course.
    m_disk.Folder.Write(m_disk.NodePath(m_pNode->GetId(), u"last.txt"_s), "x");
    m_disk.pCourse->Close();
    QTest::qWait(700);
}

TEST_F(ContentBuilderTest, WhatIsAboutToGoMayBeTheSource) {
    Write(u"a.txt"_s, "old");
    ASSERT_TRUE(Create(Of(EContentKind::ExternalFile, Source(u"a.txt"_s))));
    EXPECT_TRUE(Create(Of(EContentKind::ExternalFile, m_pNode->GetContentPath())));
    EXPECT_EQ(ReadFileBytes(m_pNode->GetContentPath()), "old");
}

TEST_F(ContentBuilderTest, ARecorderWorksBesideTheOldContent) {
    class CRecorder : public IVideoMaker {
    public:
        bool bFails = true;
        bool bRecords = false;
        QString strRecorded;
        QString CreateVideoNode(CBookNode&, const QString& strFolder) override {
            if (bRecords) {
                strRecorded = strFolder + u"r"_s;
                Torvane::File::CreateFolderPath(strRecorded);
                ReplaceFile(strRecorded + u"\\Template.prj"_s, "p");
                ReplaceFile(strRecorded + u"\\recorded.part"_s, "film");
            }
            if (bFails)
                throw Torvane::CRunException(u"创建视频失败！"_s);
            Torvane::File::CreateFolderPath(strFolder + u"v"_s);
            return u"v"_s;
        }
    } recorder;
    m_pNode->CreateEditorPage(0);
    const QString strBefore = Left();
    m_disk.People.Expect(u"创建视频失败！"_s);
    EXPECT_FALSE(Create(Of(EContentKind::Video), &recorder));
    EXPECT_EQ(Left(), strBefore);
    recorder.bFails = false;
    EXPECT_TRUE(Create(Of(EContentKind::Video), &recorder));
    EXPECT_EQ(Left(), u"4 N#\\v 2 [] [] | v/"_s);
    // Nobody gives a lecture twice: what was recorded outlives the failure and the next that is built.
    recorder.bFails = recorder.bRecords = true;
    m_disk.People.ExpectBeginning(u"创建视频失败！\n\n已录制的内容保留在\n"_s);
    EXPECT_FALSE(Create(Of(EContentKind::Video), &recorder));
    const auto kept = [&] { return ReadFileBytes(recorder.strRecorded + u"\\recorded.part"_s); };
    EXPECT_EQ(kept(), "film");
    MendNodeFolders(*m_disk.pCourse, nullptr);
    recorder.bFails = recorder.bRecords = false;
    const QString strMayGo = u"新的视频已保存到栏目中。上次没有使用的录制仍然保留在："_s;
    m_disk.People.ExpectBeginning(strMayGo, CScriptedPeople::BoxAnswer::Cancel);
    EXPECT_TRUE(Create(Of(EContentKind::Video), &recorder));
    EXPECT_EQ(kept(), "film");
    EXPECT_EQ(m_disk.People.Boxes.back().ByEnter, CScriptedPeople::BoxDefault::Last);
    m_disk.People.ExpectBeginning(strMayGo, CScriptedPeople::BoxAnswer::Ok);
    EXPECT_TRUE(Create(Of(EContentKind::Video), &recorder));
    EXPECT_EQ(Torvane::File::GetPathKind(recorder.strRecorded), Torvane::File::EPathKind::Nothing);
    EXPECT_EQ(Left(), u"4 N#\\v 2 [] [] | v/"_s);
}

TEST_F(ContentBuilderTest, AFolderBecomesABranch) {
    // The first by its creation, the others by name, which came in the same moment or later.
    const auto waitForNextMoment = [&] {
        const auto born = [&] {
            QList<Torvane::File::FolderEntry> entries;
            Torvane::File::ListFolder(Source({}), entries);
            return std::ranges::max(entries, {}, &Torvane::File::FolderEntry::nBorn).nBorn;
        };
        for (const qint64 nBefore = born(); born() == nBefore;) {
            QFile::remove(m_disk.Folder.Native(u"来/~"_s));
            Write(u"~"_s);
        }
        QFile::remove(m_disk.Folder.Native(u"来/~"_s));
    };
    Write(u"z.txt"_s, "zz");
    waitForNextMoment();
    // Made in the order of their names, which the time of their making may or may not tell apart.
    const QString strNames = u".hidden\\h.txt|allein.files\\j.png|b.txt|b.x.png|it's.png|it's.txt|leer\\|"
                             u"seite.files\\i.png|seite.htm|tief\\b.txt|tief\\innen\\k.txt|x."_s +
                             QString(190, u'e') + u'|' + QString(80, u'长') + u".txt|😀.txt"_s;
    for (const QString& strName : strNames.split(u'|'))
        strName.endsWith(u'\\') ? m_disk.Folder.MakeFolder(u"来\\"_s + strName) : Write(strName);
    waitForNextMoment();
    Write(u"b.png"_s);
    const auto native = [&](const QString& strBelow) { return m_disk.Folder.Native(u"来/"_s + strBelow); };
    m_disk.Folder.Link(native(u"z.txt"_s), u"来\\link.txt"_s);
    m_disk.Folder.Link(native({}), u"来\\kreis"_s);
    m_disk.Folder.Link(native(u"nirgends"_s), u"来\\seite.files\\fort"_s);
    m_disk.Folder.MakePipe(u"来\\pipe.txt"_s);
    const QByteArray bad = native({}).toUtf8() + "kein\xFFtext.txt";
    ::close(::open(bad.constData(), O_CREAT | O_WRONLY, 0600));

    m_pNode->CreateEditorPage(0);
    const QString strBefore = Left();
    m_pNode->AddChild(u"allein"_s);
    m_disk.People.Expect(u"已有名为allein的节点存在，该文件导入失败！"_s);
    m_disk.People.Expect(u"已有名为b的节点存在，该文件导入失败！"_s);
    m_disk.People.Expect(u"以下4个文件或文件夹未能完整导入：\n"_s + native(u".hidden：隐藏文件。\n"_s) +
                         native(u"kein\uFFFDtext.txt：文件名无法识别。\n"_s) +
                         native(u"seite.files/fort：名称无法识别或链接无效。\n"_s) + native(u"x."_s) +
                         QString(190, u'e') + u"：获取文件名失败!文件名或路径太长。"_s);
    EXPECT_TRUE(Create(Of(EContentKind::Folder, Source({}).chopped(1), u"*.*"_s)));
    EXPECT_EQ(m_disk.People.Boxes.front().strTitle, u"提示"_s);
    ::unlink(bad.constData());
    EXPECT_EQ(Left(), strBefore) << "the node's own content stays";

    QStringList made;
    for (const NodeHeader& header : m_pNode->GetDescendants()) {
        const CBookNode node(*m_disk.pCourse, header);
        const QString strFiles = FilesOf(header.Id);
        EXPECT_EQ(m_disk.Store().GetField(header.Id, u"Size"_s).toDouble(),
                  Torvane::File::GetFolderSize(node.GetFolder()));
        EXPECT_EQ(node.GetOpenType(), header.Type == 1 ? 2 : 0);
        EXPECT_TRUE(header.Type != 1 || QFile::exists(Platform::ToNativeExact(node.GetContentPath())));
        made.append(header.Title + u'(' + m_disk.Store().GetFileName(header.Id) + u' ' + strFiles + u')');
    }
    const QString strLong(80, u'长');
    const QString strMade =
        u"allein( )|link(link.txt NEW.txt)|z(z.txt NEW.txt)|b(b.txt NEW.txt)|b.x(b.x.png NEW.png)|"
        u"it''s(it's.png NEW.png)|it''s(it's.txt NEW.txt)|leer( )|"
        u"seite(seite.htm NEW.htm seite.files/ seite.files/i.png seite.htm)|"
        u"tief( )|b(b.txt NEW.txt)|innen( )|k(k.txt NEW.txt)|%1(%1.txt NEW.txt)|😀(😀.txt NEW.txt)"_s;
    EXPECT_EQ(made.join(u'|'), strMade.arg(strLong));
}

TEST_F(ContentBuilderTest, TheQuestionAboutOfficeFilesComesUntilItIsTickedAway) {
    class CTicking : public CScriptedPeople {
    public:
        std::deque<YesNoAll> Answers;
        QStringList Questions;
        YesNoAll QueryYesNoAll(const QString& strText) override {
            Questions.append(strText);
            const YesNoAll answer = Answers.front();
            Answers.pop_front();
            return answer;
        }
    } people;
    for (const QString& strFile : {u"a.doc"_s, u"b.xls"_s, u"c.ppt"_s, u"d.txt"_s})
        Write(strFile);
    people.Answers = {{false, false}, {false, true}};
    EXPECT_TRUE(CNodeContentBuilder(*m_pNode, people, [] {
                    return true;
                }).Create(Of(EContentKind::Folder, Source({}), u"*.*"_s)));
    EXPECT_EQ(people.Questions.value(0),
              m_disk.Folder.Native(u"来/a.doc"_s) +
                  u"是一个Office文件，为加快显示速度，系统推荐您将其转化为Web页引入。"
                  u"您确定将其转化为Web页吗?"_s);
    EXPECT_EQ(people.Questions.size(), 2);
    EXPECT_EQ(m_pNode->GetChildren().size(), 4);
    const QString strIni = m_disk.Folder.Path(u"程序\\AppInfo.ini"_s);
    EXPECT_EQ(ReadProfileInt(u"SysInfo"_s, u"QueryUserSaveOfficeAsHtml"_s, 7, strIni), 0);
    EXPECT_EQ(ReadProfileInt(u"SysInfo"_s, u"SaveOfficeAsHtml"_s, 7, strIni), 0);
}

TEST(DirectoryImportTest, GivingUpLeavesAWholeTreeInSilence) {
    CNotingTree tree;
    // Enough to be given up in the middle: the person is heard every 10 ms.
    constexpr int c_nFiles = 2000;
    constexpr int c_nInFolder = 250;
    constexpr int c_nAll = c_nFiles + c_nFiles / c_nInFolder;
    for (int n = 0; n < c_nFiles; ++n)
        tree.Disk.Folder.Write(u"来\\%1\\%2.txt"_s.arg(n / c_nInFolder).arg(n), "x");
    tree.Open();
    CNodeFileParams params;
    params.Kind = EContentKind::Folder;
    params.ImportFolder = tree.Disk.Folder.Path(u"来"_s);
    params.ImportFilter = u"*.txt"_s;
    QSet<qsizetype> left;
    for (const int nPieces : {0, 7, c_nAll, c_nAll + 1, c_nAll + 2, c_nAll + 3, c_nAll + 4, c_nAll + 9999}) {
        const auto pNode = CBookNode::Root(*tree.Disk.pCourse)->AddChild(u"新"_s);
        tree.Open();
        tree.Actions.SelectNode(pNode->GetId());
        tree.nPieces = nPieces;
        tree.Contents = {params};
        EXPECT_TRUE(tree.Actions.Run(32881));
        tree.nPieces = std::numeric_limits<qint64>::max();
        EXPECT_EQ(tree.Noted, QStringList());
        EXPECT_EQ(tree.StoreFault() + tree.TreeFault(), QString());
        const QList<NodeHeader> made = pNode->GetDescendants();
        for (const NodeHeader& header : made)
            EXPECT_TRUE(header.Type == 1 || header.Title.size() == 1) << "half a node";
        EXPECT_EQ(tree.Host.Last().kind, made.isEmpty() ? EViewKind::Nothing : EViewKind::ChildrenList);
        left.insert(made.size());
        pNode->Delete();
    }
    EXPECT_TRUE(left.contains(c_nAll) && left.size() > 2) << "it was given up in the middle too";
}

TEST(ImportPlanTest, AFilterTakesWhatItsPiecesSay) {
    const QString strNames = u"a.HTM b.html c d.doc .e f."_s;
    const std::pair<QString, QString> cases[] = {
        {u"*.*"_s, strNames},
        {u"*.doc;*.*;x"_s, strNames},
        {u"*.htm;*.htm;"_s, u"a.HTM c"_s},
        {u"*.DOC"_s, u"d.doc"_s},
        {u".htm;.e"_s, u"a.HTM .e"_s},
        {u"*."_s, u"f."_s},
        {u"htm;*"_s, u""_s},
        {u""_s, u"c"_s},
    };
    for (const auto& [strFilter, strTaken] : cases) {
        QStringList taken;
        for (const QString& strName : strNames.split(u' ')) {
            if (CImportFilter(strFilter).Takes(strName))
                taken.append(strName);
        }
        EXPECT_EQ(taken.join(u' '), strTaken) << strFilter;
    }
}

TEST(ImportPlanTest, APathIsShortenedInItsMiddle) {
    const QString strLong(60, u'a');
    const std::pair<QString, QString> cases[] = {
        {u"C:\\short"_s, u"C:\\short"_s},
        {strLong, QString()},
        {u"C:\\"_s + strLong, u"C:\\..."_s + QString(44, u'a')},
        {u"C:\\aa\\"_s + QString(20, u'b') + u'\\' + QString(30, u'c'), u"C:\\...\\"_s + QString(30, u'c')},
        {u"\\\\"_s + QString(47, u'h') + u"\\x"_s, QString()},
        {u"C:\\"_s + QString(30, u'章'), u"C:\\..."_s + QString(22, u'章')},
    };
    for (const auto& [strPath, strShort] : cases)
        EXPECT_EQ(ShortenPath(strPath, 50, u'\\'), strShort) << strPath;
}

} // namespace
