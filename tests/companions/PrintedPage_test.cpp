#include "companions/docexport/PrintedPage.h"
#include "tests/support/Cases.h"

#include <gmock/gmock.h>

using testing::HasSubstr;
using testing::Not;

namespace {

std::optional<PrintedPage> Read(const QString& strPage) {
    return ReadPrintedPage(
        strPage, {[](const QString& strReference) { return strReference; },
                  [](const QString& strReference) -> std::optional<ReadyPicture> {
                      if (strReference == "none"_L1)
                          return std::nullopt;
                      return ReadyPicture{u"p.png"_s, 1200, 600};
                  },
                  [](const QString& strAnchor) -> QString { return u"#to-"_s + strAnchor; },
                  [](const QString& strAnchor) -> QByteArray {
                      return "<span id=\"" + strAnchor.toUtf8() + "\"></span>";
                  },
                  [](const QByteArray& drawing) -> std::optional<ReadyPicture> {
                      EXPECT_TRUE(drawing.startsWith("<svg xmlns=\"http://www.w3.org/2000/svg\""));
                      EXPECT_TRUE(drawing.endsWith("<path d=\"M0 0\"></path></svg>")) << "or hidden";
                      return ReadyPicture{u"d.png"_s, 60, 30};
                  }});
}

} // namespace

// What teachers' pages hold, and what the document gets of it.
TEST(PrintedPage, WritesPagesAnewWellNested) {
    for (const SCase& each : ReadCases(VOREL_PRINTED_PAGE))
        EXPECT_EQ(QString::fromUtf8(Read(each.Texts[0])->Html), each.Texts[1] + u'\n') << each.strWhat;

    const std::string table =
        Read(
            u"<table border=1><tr><th>章<th>题<tr><td rowspan=9>1<td><img src=a><tr><td colspan=2>x</table>"_s)
            ->Html.toStdString();
    for (const char* szPiece : {"<thead><tr><th", "</thead><tbody>", "rowspan=\"2\"", "colspan=\"2\""})
        EXPECT_THAT(table, HasSubstr(szPiece));
    EXPECT_THAT(table, Not(HasSubstr("width=\"600\""))) << "a picture wider than its column";
    EXPECT_EQ(Read(u"<object><param name=movie value=a/片.swf></object>"_s)->LeftOut,
              QStringList{u"片.swf"_s});
    EXPECT_FALSE(Read(u"<div>"_s.repeated(5000)));
}

TEST(PrintedPage, HandsOnDrawingsWithAllThatTheyTakeFromOthers) {
    QByteArrayList drawings;
    const QString strFlat = u"<rect/>"_s.repeated(5000);
    const auto page = ReadPrintedPage(
        u"<style>.c{fill:red}</style><svg style='display:none'><symbol id=s viewbox='0 0 4 4'>"
        "<path class=c fill='url(#g)'/></symbol><linearGradient id=g xlink:href='#s'/></svg>"
        "<font color=red><svg width=4 onload=&quot;x><use xlink:href='#s'/><title>a&nbsp;b<br></title>"
        "<script>1</script><foreignObject><p>x</p></foreignObject></svg></font><svg><g>"_s +
            strFlat + u"</g></svg>"_s,
        {{}, {}, {}, {}, [&drawings](const QByteArray& drawing) {
             drawings.append(drawing);
             return std::optional<ReadyPicture>();
         }});
    ASSERT_TRUE(page) << "for many shapes are not deep";
    ASSERT_EQ(drawings.size(), 2);
    EXPECT_EQ(drawings[0].toStdString(),
              "<svg xmlns=\"http://www.w3.org/2000/svg\" xmlns:xlink=\"http://www.w3.org/1999/xlink\" "
              "color=\"#FF0000\" width=\"4\" onload=\"&quot;x\"><style>.c{fill:red}\n</style><defs><symbol "
              "id=\"s\" viewBox=\"0 0 4 4\"><path class=\"c\" fill=\"url(#g)\"></path></symbol>"
              "<linearGradient id=\"g\" xlink:href=\"#s\"></linearGradient></defs><use "
              "xlink:href=\"#s\"></use><title>a\u00a0b</title></svg>");
    EXPECT_EQ(drawings[1].count("<rect>"), 5000);
}
