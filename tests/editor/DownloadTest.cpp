#include "editor/Download.h"

#include "tests/support/StrangeServer.h"
#include "tests/support/Testing.h"

namespace {

const QByteArray c_head = "HTTP/1.0 200 OK\r\nContent-Type: image/gif\r\n\r\n";

TEST(Download, TheBodyBecomesTheFileAlsoBehindARedirection) {
    const CTempFolder folder;
    const CStrangeServer picture(c_head + "GIF89a");
    const CStrangeServer moved("HTTP/1.0 302 Moved\r\nLocation: " + picture.Url("/b.gif") + "\r\n\r\n<html>");
    for (const CStrangeServer* pServer : {&picture, &moved}) {
        const QString strName = u"图 %1.gif"_s.arg(pServer == &moved);
        EXPECT_TRUE(DownloadUrlToFile(QString::fromLatin1(pServer->Url("/a.gif")), folder.Path(strName),
                                      [] { return true; }));
        EXPECT_EQ(folder.Read(strName), "GIF89a");
    }
}

TEST(Download, NothingIsLeftOfAnythingElse) {
    const CTempFolder folder;
    const QString strName = u"a.gif"_s;
    for (const char* szReply :
         {"HTTP/1.0 404 Not Found\r\n\r\nnot here", "HTTP/1.0 302 Moved\r\n\r\n",
          "HTTP/1.0 302 Moved\r\nLocation: file:///etc/passwd\r\n\r\n", "nonsense", "HTTP/1.0 200 OK\r\n\r\n",
          "HTTP/1.0 200 OK\r\n\r\n\xEF\xBB\xBF\n<!DOCTYPE HTML><p>log in",
          "HTTP/1.0 200 OK\r\nContent-Type: Text/HTML; charset=gbk\r\n\r\n<p>log in"}) {
        const CStrangeServer server(szReply);
        EXPECT_FALSE(DownloadUrlToFile(QString::fromLatin1(server.Url("/a.gif")), folder.Path(strName), [] {
            return true;
        })) << szReply;
        EXPECT_FALSE(folder.Exists(strName));
    }
    const CStrangeServer server(c_head + "GIF89a");
    EXPECT_FALSE(DownloadUrlToFile(QString::fromLatin1(server.Url("/a.gif")),
                                   folder.Path(u"no\\such\\a.gif"_s), [] { return true; }));
}

} // namespace
