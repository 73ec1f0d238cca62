#include "app/CommandTable.h"
#include "content/TreeCommands.h"
#include "tests/app/WrittenCommands.h"
#include "tests/support/Testing.h"

namespace {

using namespace Commands;

QString NameOf(const Command& command) {
    static const QMap<ECommandRule, QString> names{{ECommandRule::Always, u"always"_s},
                                                   {ECommandRule::CourseOpen, u"course"_s},
                                                   {ECommandRule::Node, u"node"_s},
                                                   {ECommandRule::BelowRoot, u"below-root"_s},
                                                   {ECommandRule::PageOrFile, u"page-or-file"_s},
                                                   {ECommandRule::Content, u"content"_s},
                                                   {ECommandRule::ContentNoLink, u"content-no-link"_s},
                                                   {ECommandRule::Design, u"design"_s},
                                                   {ECommandRule::DesignOrSource, u"design-or-source"_s}};
    return names.value(command.Rule) + (command.bOffWhileEditing ? u"+not-editing"_s : QString());
}

// A text, shortcut or rule that drifted from what is written down, an id used twice, a command that a floor
// lost or that nobody wrote down.
TEST(CommandTable, SaysWhatIsWrittenDown) {
    QSet<int> written;
    for (const QStringList& line : WrittenCommands(u"command"_s)) {
        ASSERT_EQ(line.size(), 6) << line.join(u'|');
        const Command* pCommand = Find(line[0].toInt());
        ASSERT_NE(pCommand, nullptr) << line[0];
        written.insert(pCommand->nId);
        const QStringList said{line[0],
                               pCommand->strText.toString(),
                               pCommand->strButton.toString(),
                               pCommand->strStatus.toString(),
                               pCommand->strShortcut.toString(),
                               NameOf(*pCommand)};
        for (qsizetype n = 0; n < line.size(); ++n)
            EXPECT_TRUE(line[n] == u"*"_s || line[n] == said[n]) << line[0] << ": " << said[n];
    }
    EXPECT_EQ(written.size(), static_cast<qsizetype>(All().size()));
}

TEST(CommandTable, EveryPlaceHoldsWhatIsWrittenDown) {
    const QList<Place> places = Places();
    const QList<QStringList> written = WrittenCommands(u"place"_s);
    ASSERT_EQ(places.size(), written.size());
    for (qsizetype n = 0; n < places.size(); ++n) {
        EXPECT_EQ(places[n].strName, written[n][0]);
        QStringList ids;
        for (const int nId : places[n].Items) {
            ids.append(QString::number(nId));
            EXPECT_TRUE(nId == 0 || nId == c_nRecentPlaceholder || Find(nId)) << nId;
        }
        EXPECT_EQ(ids.join(u' ').toStdString(), QString(written[n][1]).remove(u"+ "_s).toStdString());
    }
}

TEST(CommandTable, ACommandIsEnabledByItsOwner) {
    struct Row {
        int nId;
        State state;
        bool bEnabled;
    };
    const Row rows[] = {
        {c_nNewCourse, {}, true},
        {c_nCompileHtml, {}, false},
        {c_nCompileHtml, {.bCourseOpen = true}, true},
        {c_nExportWord, {.bCourseOpen = true}, true},
        {TreeCommand::c_nEditContent, {.bCourseOpen = true}, false},
        {TreeCommand::c_nEditContent, {.bTreeSaysYes = true}, true},
        {32825, {.bCourseOpen = true, .bTreeSaysYes = true}, false},
        {32825, {.bViewSaysYes = true}, true},
    };
    for (const Row& row : rows)
        EXPECT_EQ(IsEnabled(*Find(row.nId), row.state), row.bEnabled) << row.nId;
}

TEST(CommandTable, WithoutVideoTheMenuOfKindsOffersNone) {
    const DropDown& kinds = DropDowns().last();
    EXPECT_TRUE(ItemsOf(kinds, true).contains(TreeCommand::c_nCreateVideo));
    EXPECT_FALSE(ItemsOf(kinds, false).contains(TreeCommand::c_nCreateVideo));
}

} // namespace
