// Pages on their road from the file through the engine and back: opened and left, edited and saved, opened
// again. VOREL_PAGES names a folder whose pages are tried as well.
#include "tests/editor_ui/EditorFixture.h"
#include "tests/support/Cases.h"

namespace {

class RoundTripTest : public CEditorFixture {
protected:
    void ExpectParts(const QStringList& parts) {
        for (const QString& strPart : parts)
            EXPECT_TRUE(Html().contains(strPart)) << strPart << " is not in " << Html();
    }
    /// What a person sees of a text: its words, and what its pictures and objects name.
    static QString Seen(QString strHtml) {
        static const QRegularExpression s_raw(u"<!--.*?-->|<(style|script)\\b.*?</\\1>"_s,
                                              QRegularExpression::DotMatchesEverythingOption |
                                                  QRegularExpression::CaseInsensitiveOption);
        static const QRegularExpression s_source(
            u"<(?:img|embed|bgsound|iframe|frame)\\b[^>]*?src=\"([^\"]*)\"[^>]*>"_s);
        static const QRegularExpression s_tag(u"<[^>]*>"_s);
        strHtml.remove(s_raw).replace(s_source, u"[\\1]"_s).remove(s_tag);
        return strHtml.simplified();
    }

    /// The parts must stand in the surface from beginning to end.
    void Try(const QString& strWhat, const QByteArray& page, const QStringList& parts = {}) {
        SCOPED_TRACE(strWhat);
        const auto nBoxes = m_world.People.Boxes.size();
        const auto leavesInSilence = [&](const QByteArray& file) {
            return m_view.LeaveNode(true) && m_world.People.Boxes.size() == nBoxes &&
                   m_world.Folder.Read(PageFile()) == file;
        };
        Open(page);
        const QString strBefore = Html();
        ExpectParts(parts);
        EXPECT_TRUE(leavesInSilence(page)) << "opened and left";
        OpenAgain();
        const bool bFrames = strBefore.startsWith(u"<frameset"_s);
        const QString strMark = bFrames ? u"<frameset title=\"t\""_s : u"<i>尾</i>"_s;
        const QString strEdited =
            bFrames ? QString(strBefore).replace(u"<frameset"_s, strMark) : QString(strBefore + strMark);
        EXPECT_TRUE(Surface("design").SetBrowserBodyInnerHTML(strEdited) && m_view.RunCommand(32825));
        EXPECT_TRUE(OnDisk().contains(strMark)) << OnDisk();
        m_view.LeaveNode(true);
        const QByteArray saved = m_world.Folder.Read(PageFile());
        OpenAgain();
        ExpectParts(parts);
        EXPECT_EQ(Seen(Html()), Seen(strEdited)) << "text and pictures are what they were";
        EXPECT_EQ(Html(), OnDisk().replace(u"\r\n"_s, u"\n"_s)) << "the engine would write it otherwise";
        EXPECT_TRUE(m_view.RunCommand(32825) && leavesInSilence(saved)) << "opened again and left";
    }
};

TEST_F(RoundTripTest, OddPagesSettleAtTheirFirstSave) {
    const QString strChinese = u"<p>第一章 绪论，数据结构与算法的基本概念。</p>"_s;
    const QByteArray wide(reinterpret_cast<const char*>(strChinese.utf16()), strChinese.size() * 2);
    const struct {
        const char* szWhat;
        QByteArray Page;
        QString strShown = {};
    } rows[] = {
        {"code page, nothing said", CodePage::Encode(strChinese), strChinese},
        {"UTF-8, nothing said", strChinese.toUtf8(), strChinese},
        {"UTF-8 with a mark", "\xEF\xBB\xBF" + strChinese.toUtf8(), strChinese},
        {"UTF-8 that says so", "<meta charset=utf-8>" + strChinese.toUtf8(), strChinese},
        {"Big5 that says so", "<html><head><meta charset=big5></head><body>\xA4\xA4\xA4\xE5</body></html>",
         u"中文"_s},
        {"UTF-16 with a mark", "\xFF\xFE" + wide, strChinese},
        {"UTF-16, nothing said", wide, strChinese},
        {"a declaration that saving makes untrue",
         u"<p>前</p><meta charset=\"utf-8\"><p>中文课程内容</p>"_s.toUtf8(),
         u"<p>前</p><p>中文课程内容</p>"_s},
        {"an older name of the code page, with characters of its newest form",
         "<meta charset=gb2312>" + CodePage::Encode(u"<p>😀 𠮷 人</p>"_s), u"<p>😀 𠮷 人</p>"_s},
        {"half a character", CodePage::Encode(u"<p>前"_s) + "\xD6"},
    };
    for (const auto& [szWhat, page, strShown] : rows)
        Try(QLatin1String(szWhat), page, {strShown});
    for (const SCase& each : ReadCases(VOREL_EDITOR_TESTS "/odd_pages.txt"))
        Try(each.strWhat, CodePage::Encode(each.Texts[0]), each.Texts.mid(1));
    const QString strFolder = qEnvironmentVariable("VOREL_PAGES");
    for (QDirIterator it(strFolder, {u"*.htm"_s, u"*.html"_s}, QDir::Files, QDirIterator::Subdirectories);
         !strFolder.isEmpty() && it.hasNext();) {
        const QString strFile = it.next();
        Try(strFile, ReadTestFile(strFile.toUtf8().constData()));
    }
}

} // namespace
