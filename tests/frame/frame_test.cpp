// The library as a whole: its exports, its dynamic section, the public header
// from C, the version record and the core library's answers.
#include <dlfcn.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <regex>
#include <set>
#include <sstream>
#include <string>

#include "krocore.h"
#include "test_common.h"

namespace {

std::string run(const std::string& cmd) {
    std::string out;
    FILE* p = popen(cmd.c_str(), "r");
    if (p == nullptr) return out;
    char buf[4096];
    size_t n;
    while ((n = fread(buf, 1, sizeof buf, p)) > 0) out.append(buf, n);
    pclose(p);
    return out;
}

std::set<std::string> lines(const std::string& path) {
    std::ifstream f(path);
    std::set<std::string> s;
    for (std::string l; std::getline(f, l);)
        if (!l.empty()) s.insert(l);
    return s;
}

// Names that the public header declares as exported functions.
std::set<std::string> headerNames() {
    std::ifstream f(std::string(KROCC_INCLUDE_DIR) + "/krocc.h");
    std::stringstream ss;
    ss << f.rdbuf();
    std::string text = ss.str();
    std::set<std::string> s;
    std::regex decl(R"(KROAPI[^;(]*?[ *](kro\w+)\s*\()");
    for (auto it = std::sregex_iterator(text.begin(), text.end(), decl); it != std::sregex_iterator(); ++it)
        s.insert((*it)[1]);
    return s;
}

std::set<std::string> dynamicSymbols(const char* flags) {
    std::set<std::string> s;
    std::istringstream in(run(std::string("nm -D ") + flags + " " + KROCC_LIB_PATH));
    for (std::string l; std::getline(in, l);) {
        std::istringstream ls(l);
        std::vector<std::string> w;
        for (std::string t; ls >> t;) w.push_back(t);
        if (w.empty()) continue;
        std::string name = w.back();
        if (auto at = name.find('@'); at != std::string::npos) name.resize(at);
        s.insert(name);
    }
    return s;
}

}  // namespace

TEST(Exports, ExactlyTheDeclaredNamesOfTheExportList) {
    const auto all = lines(KROCC_EXPORT_LIST);
    const auto declared = headerNames();
    ASSERT_FALSE(declared.empty());
    for (const auto& n : declared) EXPECT_TRUE(all.count(n)) << "declared but not an export of the library: " << n;

    const auto defined = dynamicSymbols("--defined-only");
    for (const auto& n : declared) EXPECT_TRUE(defined.count(n)) << "missing export: " << n;
    for (const auto& n : defined) EXPECT_TRUE(declared.count(n)) << "extra export: " << n;
}

TEST(Exports, CoreQueriesAreImportedNotCopied) {
    const auto undef = dynamicSymbols("--undefined-only");
    EXPECT_TRUE(undef.count("ownGetFeature"));
    EXPECT_TRUE(undef.count("kroGetMaxCacheSizeB"));
    const auto defined = dynamicSymbols("--defined-only");
    EXPECT_FALSE(defined.count("ownGetFeature"));
    EXPECT_FALSE(defined.count("kroGetMaxCacheSizeB"));

    const std::string dyn = run(std::string("readelf -d ") + KROCC_LIB_PATH);
    EXPECT_NE(dyn.find("(NEEDED)             Shared library: [libkrocore.so.11]"), std::string::npos) << dyn;
    EXPECT_NE(dyn.find("(SONAME)             Library soname: [libkrocck0.so.11]"), std::string::npos) << dyn;
}

TEST(Header, CompilesLinksAndRunsAsC99) {
    const std::string lib = KROCC_LIB_PATH;
    const std::string dir = lib.substr(0, lib.rfind('/'));
    char tmpl[] = "/tmp/kroccXXXXXX";
    ASSERT_NE(mkdtemp(tmpl), nullptr);
    const std::string exe = std::string(tmpl) + "/c_client";
    const std::string src = std::string(KROCC_INCLUDE_DIR) + "/../tests/frame/c_client.c";
    const std::string cc = std::string(KROCC_C_COMPILER) + " " + KROCC_C_EXTRA_FLAGS +
                           " -std=c99 -pedantic -Wall -Werror -I" + KROCC_INCLUDE_DIR +
                           " " + src + " -o " + exe + " " + lib + " -Wl,-rpath," + dir + " 2>&1; echo rc=$?";
    // -Werror: any diagnostic about the header fails the compile. (A sanitized
    // library makes the linker warn about its runtime; that is no failure.)
    const std::string out = run(cc);
    ASSERT_NE(out.find("rc=0"), std::string::npos) << cc << "\n" << out;
    EXPECT_EQ(out.find("c_client.c"), std::string::npos) << out;
    EXPECT_EQ(out.find("krocc.h"), std::string::npos) << out;
    const std::string printed = run(exe + " ; echo rc=$?");
    EXPECT_NE(printed.find("rc=0"), std::string::npos) << printed;
    EXPECT_NE(printed.find("white->(255,128,128) black->(0,128,128)"), std::string::npos) << printed;
    std::system(("rm -rf " + std::string(tmpl)).c_str());
}

TEST(Version, ConstantRecord) {
    const KroLibraryVersion* v = kroccGetLibVersion();
    ASSERT_NE(v, nullptr);
    EXPECT_EQ(v, kroccGetLibVersion());
    EXPECT_EQ(v->major, 2022);
    EXPECT_EQ(v->minor, 3);
    EXPECT_EQ(v->update, 0);
    EXPECT_EQ(v->revision, 264276913);
    EXPECT_STREQ(v->targetCpu, "k0");
    EXPECT_EQ(v->targetCpu[2], 0);
    EXPECT_EQ(v->targetCpu[3], 0);
    EXPECT_STREQ(v->Name, "kroCC AVX-512F/CD/BW/DQ/VL (k0)");
    EXPECT_STREQ(v->Version, "2022.3.0 (r0x0fc08bb1)");
    EXPECT_STREQ(v->BuildDate, "Sep 19 2025");
}

// The core library answers from the processor: compare with /proc/cpuinfo.
TEST(CoreLibrary, FeatureAndCacheAnswers) {
    std::ifstream f("/proc/cpuinfo");
    std::string text((std::istreambuf_iterator<char>(f)), std::istreambuf_iterator<char>());
    const bool flags = text.find(" avx512_vnni") != std::string::npos && text.find(" avx512vbmi") != std::string::npos;
    EXPECT_EQ(kt::cpuHasVnni(), flags);

    void* core = dlopen("libkrocore.so.11", RTLD_NOW | RTLD_NOLOAD);
    ASSERT_NE(core, nullptr);
    auto cache = reinterpret_cast<int (*)(int*)>(dlsym(core, "kroGetMaxCacheSizeB"));
    ASSERT_NE(cache, nullptr);
    int size = -1;
    const int st = cache(&size);
    if (st == 0) {
        EXPECT_GE(size, 64 * 1024);
    } else {
        std::printf("*** the core library cannot tell the cache size here (status %d)\n", st);
    }
    dlclose(core);
}
