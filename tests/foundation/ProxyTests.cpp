#include "foundation/Proxy.h"
#include "tests/support/Environment.h"
#include "tests/support/Testing.h"

using Torvane::Net::ProxyFor;

TEST(Proxy, IsTakenFromTheEnvironment) {
    const struct {
        QList<std::pair<const char*, const char*>> variables;
        const char *szScheme, *szHost, *szProxy;
        bool bTakesWholeAddress;
    } rows[] = {
        {{}, "http", "h.cn", "", false},
        {{{"http_proxy", "http://p:1"}}, "http", "h.cn", "http://p:1", true},
        {{{"http_proxy", "http://p:1"}}, "https", "h.cn", "", false},
        {{{"http_proxy", "http://p:1"}}, "http", "127.0.0.1", "", false},
        {{{"HTTPS_PROXY", "p:2"}}, "https", "h.cn", "p:2", false},
        {{{"all_proxy", "socks5h://p:3"}}, "http", "h.cn", "socks5h://p:3", false},
        {{{"all_proxy", "p:3"}, {"no_proxy", "a, .School.CN"}}, "http", "www.school.cn", "", false},
        {{{"all_proxy", "p:3"}, {"NO_PROXY", "school.cn"}}, "http", "myschool.cn", "p:3", true},
    };
    for (const auto& row : rows) {
        CEnvironment environment{{"http_proxy", {}}, {"https_proxy", {}}, {"HTTPS_PROXY", {}},
                                 {"all_proxy", {}},  {"ALL_PROXY", {}},   {"no_proxy", {}},
                                 {"NO_PROXY", {}}};
        for (const auto& [szVariable, szValue] : row.variables)
            environment.Set(szVariable, QString::fromLatin1(szValue));
        const auto proxy = ProxyFor(row.szScheme, row.szHost);
        EXPECT_EQ(proxy.Address.toStdString(), row.szProxy) << row.szHost;
        EXPECT_EQ(proxy.bTakesWholeAddress, row.bTakesWholeAddress) << row.szProxy;
    }
}
