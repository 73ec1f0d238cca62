// Pages on their road from the file through the engine and back: opened and left, edited and saved, opened
// again. Prints a row for each. VOREL_PAGES names a folder whose pages are tried as well.
#include "tests/editor_ui/EditorFixture.h"
#include "tests/support/Cases.h"

using BoxAnswer = CScriptedPeople::BoxAnswer;

namespace {

class RoundTripTest : public CEditorFixture {
protected:
    struct SRow {
        bool bQuietAtFirst = false; ///< opened and left: no question, the file as it was
        bool bSaved = false;        ///< the edit was written
        bool bSeen = false;         ///< text and pictures are what they were
        bool bQuietAgain = false;   ///< opened again and left: no question, the file as it was
        bool bStable = false;       ///< the engine's text is now what the file holds
        bool AllIsWell() const { return bQuietAtFirst && bSaved && bSeen && bQuietAgain && bStable; }
    };

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
    SRow Try(const QByteArray& page, const QStringList& parts = {}) {
        SRow row;
        Open(page);
        const QString strBefore = Html();
        ExpectParts(parts);
        const auto nBoxes = m_world.People.Boxes.size();
        row.bQuietAtFirst = m_view.LeaveNode(true) && m_world.People.Boxes.size() == nBoxes &&
                            m_world.Folder.Read(PageFile()) == page;
        OpenAgain();
        const QString strMark = u"<i>尾</i>"_s;
        const bool bFrames = strBefore.startsWith(u"<frameset"_s);
        const QString strEdited = bFrames
                                      ? QString(strBefore).replace(u"<frameset"_s, u"<frameset title=\"t\""_s)
                                      : strBefore + strMark;
        row.bSaved = Surface("design").SetBrowserBodyInnerHTML(strEdited) && m_view.RunCommand(32825) &&
                     OnDisk().contains(bFrames ? u"title=\"t\""_s : strMark);
        m_view.LeaveNode(true);
        const QByteArray saved = m_world.Folder.Read(PageFile());
        OpenAgain();
        ExpectParts(parts);
        row.bSeen = Seen(Html()) == Seen(strEdited);
        row.bStable = Html() == OnDisk().replace(u"\r\n"_s, u"\n"_s);
        if (!row.bSeen || !row.bStable)
            std::printf("before %s\nafter  %s\n", qPrintable(strEdited.left(2000)),
                        qPrintable(Html().left(2000)));
        row.bQuietAgain = m_view.RunCommand(32825) && m_view.LeaveNode(true) &&
                          m_world.People.Boxes.size() == nBoxes && m_world.Folder.Read(PageFile()) == saved;
        return row;
    }

    void Tell(const QByteArray& name, const SRow& row) {
        const auto say = [](bool bGood) { return bGood ? "yes" : "NO"; };
        std::printf("%-44s %-6s %-6s %-6s %-6s %-6s\n", name.constData(), say(row.bQuietAtFirst),
                    say(row.bSaved), say(row.bSeen), say(row.bQuietAgain), say(row.bStable));
        EXPECT_TRUE(row.AllIsWell()) << name;
    }

    static void Head() {
        std::printf("%-44s %-6s %-6s %-6s %-6s %-6s\n", "page", "quiet", "saved", "seen", "again", "stable");
    }
};

TEST_F(RoundTripTest, OddPagesSettleAtTheirFirstSave) {
    const QString strChinese = u"<p>第一章 绪论，数据结构与算法的基本概念。</p>"_s;
    QByteArray wide = QByteArray::fromHex("fffe");
    QByteArray bareWide;
    for (const QChar c : strChinese) {
        bareWide.append(static_cast<char>(c.unicode() & 0xFF)).append(static_cast<char>(c.unicode() >> 8));
    }
    wide += bareWide;
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
        {"UTF-16 with a mark", wide, strChinese},
        {"UTF-16, nothing said", bareWide, strChinese},
        {"a declaration that saving makes untrue",
         u"<p>前</p><meta charset=\"utf-8\"><p>中文课程内容</p>"_s.toUtf8(),
         u"<p>前</p><p>中文课程内容</p>"_s},
        {"half a character", CodePage::Encode(u"<p>前"_s) + "\xD6"},
    };
    Head();
    for (const auto& [szWhat, page, strShown] : rows)
        Tell(szWhat, Try(page, {strShown}));
    for (const SCase& each : ReadCases(VOREL_EDITOR_TESTS "/odd_pages.txt"))
        Tell(each.strWhat.toUtf8(), Try(CodePage::Encode(each.Texts[0]), each.Texts.mid(1)));
    const QString strFolder = qEnvironmentVariable("VOREL_PAGES");
    for (QDirIterator it(strFolder, {u"*.htm"_s, u"*.html"_s}, QDir::Files, QDirIterator::Subdirectories);
         !strFolder.isEmpty() && it.hasNext();) {
        QFile file(it.next());
        if (file.open(QIODevice::ReadOnly))
            Tell(file.fileName().right(44).toUtf8(), Try(file.readAll()));
    }
}

} // namespace
