#include "office/SlideList.h"

#include "foundation/CodePage.h"
#include "tests/support/Testing.h"

using namespace Torvane::Office;

namespace {

QString Slides(const CTempFolder& folder) {
    QStringList rows;
    for (const SlideEntry& slide : SlidesIn(folder.Path(u"a.files"_s)))
        rows.append(slide.strFile + u'=' + slide.strTitle);
    return rows.join(u'|');
}

} // namespace

// Another program's export: the list has names for itself alone, the outline has the titles beside numbers
// and in scripts, and one slide is in neither.
TEST(SlideList, IsReadFromWhatThereIs) {
    const CTempFolder folder;
    const auto write = [&](const QString& strName, const QString& strText) {
        folder.Write(u"a.files\\"_s + strName, CodePage::Encode(strText));
    };
    EXPECT_EQ(Slides(folder), QString());
    for (const QString& strName :
         {u"Slide0001.htm"_s, u"slide0002.htm"_s, u"slide0004.htm"_s, u"master03.htm"_s})
        write(strName, u"<div class=T>  第二\n 张</div>"_s);
    write(u"slide0010.htm"_s, u"<p>no heading</p>"_s);
    EXPECT_EQ(Slides(folder), u"Slide0001.htm=第二 张|slide0002.htm=第二 张|slide0004.htm=第二 张|"
                              "slide0010.htm=第 4 页"_s);
    write(u"outline.htm"_s,
          u"<table><tr><td onclick=\"GoToSld('slide0001.htm')\">1</td><td><a href=\"JavaScript:parent."
          "GoToSld('SLIDE0001.HTM')\">引 言</a></td></tr><a href=slide0004.htm>小结</a></table>"_s);
    write(u"pres.xml"_s,
          u"<xml xmlns:p=\"urn:x\"><p:master href=\"master03.htm\"/><p:slide href=\"slide0004.htm\"/>"
          "<p:slide href=\"slide0001.htm\"/><p:slide href=\"slide0099.htm\"/></xml>"_s);
    EXPECT_EQ(Slides(folder), u"slide0004.htm=小结|Slide0001.htm=引 言|slide0002.htm=第二 张|"
                              "slide0010.htm=第 4 页"_s);
    EXPECT_FALSE(IsSlideViewer(folder.Path(u"a.files\\Frame.htm"_s)));
    write(u"fullscreen.htm"_s, QString());
    EXPECT_TRUE(IsSlideViewer(folder.Path(u"a.files\\Frame.htm"_s)));
    EXPECT_FALSE(IsSlideViewer(folder.Path(u"a.files\\slide0002.htm"_s)));
}
