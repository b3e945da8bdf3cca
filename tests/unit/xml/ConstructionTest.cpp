// Where documents get their text from.
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "codecs/Gzip.h"
#include "system/Resources.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/unit/xml/TreeText.h"
#include "text/FileUrl.h"

namespace faults = tavrel::system::faults;
using tavrel::system::ByteBuffer;
using tavrel::test::TemporaryFolder;
using tavrel::test::TreeOf;
using tavrel::text::FileUrlOfPath;

namespace {

void ExpectEmptyTree(const TBXML& document) {
  EXPECT_EQ(document.rootXMLElement(), nullptr);
  EXPECT_EQ(document.fields().bytesLength, 0);
  ASSERT_NE(document.fields().bytes, nullptr);
  EXPECT_STREQ(document.fields().bytes, "");
}

class ResourceDocument : public testing::Test {
 protected:
  ResourceDocument() { tavrel::system::SetResourceFolder(folder_.path()); }
  ~ResourceDocument() override { tavrel::system::SetResourceFolder(""); }

  TemporaryFolder folder_;
};

}  // namespace

TEST(Construction, InitLeavesAllFieldsZero) {
  TBXML document;
  EXPECT_EQ(document.init(), &document);
  const TBXMLFields zero{};
  EXPECT_EQ(std::memcmp(&document.fields(), &zero, sizeof zero), 0);
}

TEST(Construction, AStringsLengthIsCountedInBytes) {
  const std::string text = "<a>h\xC3\xA4ndel \xE6\x97\xA5 \xF0\x9F\x8E\xB5</a>";
  TBXML document;
  EXPECT_EQ(document.initWithXMLString(text), &document);
  EXPECT_EQ(document.fields().bytesLength, static_cast<std::ptrdiff_t>(text.size()));
  EXPECT_EQ(document.fields().bytes[text.size()], '\0');
  EXPECT_EQ(TreeOf(document.rootXMLElement()), "a'h\xC3\xA4ndel \xE6\x97\xA5 \xF0\x9F\x8E\xB5'");
}

TEST(Construction, NoStringIsAnEmptyText) {
  TBXML document;
  document.initWithXMLString(std::nullopt);
  ExpectEmptyTree(document);
  document.initWithXMLString("");
  ExpectEmptyTree(document);
}

TEST(Construction, ABufferIsCopiedAndLeftUntouched) {
  const std::string text = "<a b='<![CDATA[x]]>'><![CDATA[<c>]]></a>";
  const ByteBuffer data = ByteBuffer::Copy(text);
  TBXML document;
  EXPECT_EQ(document.initWithXMLData(data), &document);
  EXPECT_EQ(TreeOf(document.rootXMLElement()), "a(b=x)'<c>'");
  EXPECT_NE(document.fields().bytes, data.data());
  EXPECT_EQ(data.view(), text);
}

TEST(Construction, NoBufferIsAnEmptyText) {
  TBXML document;
  document.initWithXMLData(ByteBuffer());
  ExpectEmptyTree(document);
  document.initWithXMLData(ByteBuffer::Copy(""));
  ExpectEmptyTree(document);
}

TEST(Construction, ABufferNeedNotBeUtf8) {
  TBXML document;
  document.initWithXMLData(ByteBuffer::Copy("<a>\xFF</a>"));
  EXPECT_EQ(TreeOf(document.rootXMLElement()), "a'\xFF'");
}

TEST(Construction, AFileIsReadByItsUrl) {
  const TemporaryFolder folder;
  for (const char* name : {"plain.xml", "with blank.xml", "100%.xml", "a#b?c;d.xml",
                           "h\xC3\xA4.xml", "not utf-8 \xE4\xFF.xml", "deep/er/file"}) {
    const std::string path = folder.Write(name, "<a>x</a>");
    TBXML document;
    EXPECT_EQ(document.initWithURL(FileUrlOfPath(path)), &document);
    EXPECT_EQ(TreeOf(document.rootXMLElement()), "a'x'") << name;
    EXPECT_EQ(document.fields().bytesLength, 8);
  }
}

TEST(Construction, AFileKeepsItsByteOrderMarkAndCountsItsZeroBytes) {
  const TemporaryFolder folder;
  const std::string text("\xEF\xBB\xBF<a>x\0<b/></a>", 16);
  TBXML document;
  document.initWithURL(FileUrlOfPath(folder.Write("file", text)));
  EXPECT_EQ(TreeOf(document.rootXMLElement()), "a'x'");
  EXPECT_EQ(document.fields().bytesLength, 16);
  EXPECT_EQ(std::memcmp(document.fields().bytes, "\xEF\xBB\xBF", 3), 0);
}

TEST(Construction, AUrlThatCannotBeReadGivesAnEmptyTree) {
  const TemporaryFolder folder;
  const std::string file = folder.Write("file", "<a/>");
  for (const std::string& url :
       {FileUrlOfPath(folder.PathOf("missing")), FileUrlOfPath(folder.path()), std::string(),
        "http://localhost" + file, file, FileUrlOfPath(file) + "%", "file://elsewhere" + file}) {
    TBXML document;
    EXPECT_EQ(document.initWithURL(url), &document);
    ExpectEmptyTree(document);
  }
}

TEST(Construction, AFileThatIsNotUtf8GivesAnEmptyTree) {
  const TemporaryFolder folder;
  TBXML document;
  document.initWithURL(FileUrlOfPath(folder.Write("file", "<a>\xE9</a>")));
  ExpectEmptyTree(document);
}

TEST(Construction, AnEmptyFileGivesAnEmptyTree) {
  const TemporaryFolder folder;
  TBXML document;
  document.initWithURL(FileUrlOfPath(folder.Write("file", "")));
  ExpectEmptyTree(document);
}

TEST(Construction, InitialisingAgainReleasesTheFormerText) {
  TBXML document;
  document.initWithXMLString("<a b='1'>x</a>");
  document.initWithXMLString("<c/>");
  EXPECT_EQ(TreeOf(document.rootXMLElement()), "c");
  EXPECT_EQ(document.fields().currentAttributeBuffer, nullptr);
  document.init();
  EXPECT_EQ(document.rootXMLElement(), nullptr);
  EXPECT_EQ(document.fields().bytes, nullptr);
}

TEST(Construction, FactoriesGiveWhatTheirConstructorsGive) {
  const TemporaryFolder folder;
  const std::string text = "<a>x</a>";
  const std::string path = folder.Write("file.xml", text);
  tavrel::system::SetResourceFolder(folder.path());
  for (const auto& document : {TBXML::tbxmlWithURL(FileUrlOfPath(path)).release(),
                               TBXML::tbxmlWithXMLString(text).release(),
                               TBXML::tbxmlWithXMLData(ByteBuffer::Copy(text)).release(),
                               TBXML::tbxmlWithXMLFile("file.xml").release(),
                               TBXML::tbxmlWithXMLFile("file", "xml").release()}) {
    ASSERT_NE(document, nullptr);
    EXPECT_EQ(TreeOf(document->rootXMLElement()), "a'x'");
    delete document;
  }
  tavrel::system::SetResourceFolder("");
}

TEST(Construction, ExhaustedMemoryGivesADocumentWithoutElements) {
  for (const std::size_t size : {std::size_t{100}, std::size_t{3} << 20}) {
    const std::string text = "<a>" + std::string(size, 'x') + "</a>";
    TBXML document;
    faults::FailAfter(0, true);
    EXPECT_EQ(document.initWithXMLString(text), &document);
    faults::Stop();
    EXPECT_EQ(document.rootXMLElement(), nullptr);
    EXPECT_EQ(document.fields().bytes, nullptr);
  }
}

TEST_F(ResourceDocument, IsFoundByItsNameWithAnExtension) {
  folder_.Write("menu.xml", "<a>x</a>");
  TBXML document;
  document.initWithXMLFile("menu.xml");
  EXPECT_EQ(TreeOf(document.rootXMLElement()), "a'x'");
}

TEST_F(ResourceDocument, IsFoundByNameAndExtensionApart) {
  folder_.Write("menu.old.xml", "<a>x</a>");
  TBXML document;
  document.initWithXMLFile("menu.old", "xml");
  EXPECT_EQ(TreeOf(document.rootXMLElement()), "a'x'");
  document.initWithXMLFile("menu", "xml");
  ExpectEmptyTree(document);
}

TEST_F(ResourceDocument, IsInflatedWhenItsExtensionIsGz) {
  const ByteBuffer stream = tavrel::gzipDeflate(ByteBuffer::Copy("<a>x</a>"));
  folder_.Write("menu.xml.gz", stream.view());
  TBXML apart;
  apart.initWithXMLFile("menu.xml", "gz");
  EXPECT_EQ(TreeOf(apart.rootXMLElement()), "a'x'");
  EXPECT_EQ(apart.fields().bytesLength, 8);
  TBXML whole;
  whole.initWithXMLFile("menu.xml.gz");
  EXPECT_EQ(TreeOf(whole.rootXMLElement()), "a'x'");
}

TEST_F(ResourceDocument, ThatIsNoStreamInAGzFileHasAnEmptyTree) {
  folder_.Write("menu.gz", "<a>x</a>");
  TBXML document;
  document.initWithXMLFile("menu.gz");
  ExpectEmptyTree(document);
}

TEST_F(ResourceDocument, ThatIsMissingHasAnEmptyTree) {
  folder_.Write("folder.xml/file", "");
  for (const char* name : {"missing.xml", "missing", "", "folder.xml"}) {
    TBXML document;
    EXPECT_EQ(document.initWithXMLFile(name), &document);
    ExpectEmptyTree(document);
  }
}
