#include "dirdisplay/PropertyCatalogue.h"

#include <gtest/gtest.h>

#include <vector>

namespace brackwell {
namespace {

using Names = std::vector<std::string>;

Names NodeNames(std::span<const InfoItem> items) {
  Names names;
  for (const InfoItem& item : items) names.push_back(NodeName(item.Caption));
  return names;
}

TEST(PropertyCatalogue, NamesTheNodesAfterTheCaptions) {
  EXPECT_EQ(
      NodeNames(FolderCatalogue()),
      (Names{"full_name", "date_created", "date_last_accessed", "date_last_modified", "file_quantity",
             "is_root", "parent_folder", "short_name", "short_path", "size", "subfolder_quantity", "type"}));
  EXPECT_EQ(NodeNames(FileCatalogue()),
            (Names{"name", "date_created", "date_last_accessed", "date_last_modified", "path", "short_name",
                   "short_path", "size", "type", "extension"}));
}

TEST(PropertyCatalogue, AFoldersPathIsItsFullNameAndItHasNoName) {
  EXPECT_EQ(FolderCatalogue()[0], (InfoItem{"Full Name", "Path"}));
  EXPECT_EQ(FileCatalogue()[4], (InfoItem{"Path", "Path"}));
  for (const InfoItem& item : FolderCatalogue()) EXPECT_NE(item.Caption, "Name");
}

TEST(PropertyCatalogue, EveryKeyOfItIsKnown) {
  for (const InfoItem& item : FolderCatalogue()) EXPECT_NE(FolderKey(item.Key), InfoKey::Unknown) << item.Key;
  for (const InfoItem& item : FileCatalogue()) EXPECT_NE(FileKey(item.Key), InfoKey::Unknown) << item.Key;
}

TEST(PropertyCatalogue, KeysAreFoundWhateverTheirCase) {
  EXPECT_EQ(FolderKey("datecreated"), InfoKey::DateCreated);
  EXPECT_EQ(FileKey("dAtElAsTaCcEsSeD"), InfoKey::DateLastAccessed);
}

TEST(PropertyCatalogue, KeysThatAreNotOfferedAreAnswered) {
  EXPECT_EQ(FolderKey("Attributes"), InfoKey::Attributes);
  EXPECT_EQ(FileKey("Attributes"), InfoKey::Attributes);
  EXPECT_EQ(FolderKey("Name"), InfoKey::Name);
  EXPECT_EQ(FileKey("ParentFolder"), InfoKey::ParentFolder);
}

TEST(PropertyCatalogue, KeysOfTheOtherKindAreUnknown) {
  EXPECT_EQ(FolderKey("Extension"), InfoKey::Unknown);
  for (const char* key : {"Files", "IsRootFolder", "Subfolders", "", "Size ", "Color", "S\xC3\xAFze"})
    EXPECT_EQ(FileKey(key), InfoKey::Unknown) << key;
}

TEST(NodeName, IsInLowerCaseWithoutBlanks) {
  EXPECT_EQ(NodeName("Date Last  Accessed"), "date_last__accessed");
  EXPECT_EQ(NodeName("\xC3\x84nderung"), "\xC3\xA4nderung");
  EXPECT_EQ(NodeName("a.b-c1"), "a.b-c1");
}

TEST(NodeName, HoldsNothingThatWouldBreakADocument) {
  EXPECT_EQ(NodeName(""), "_");
  EXPECT_EQ(NodeName("<b>&\"'"), "_b____");
  EXPECT_EQ(NodeName("2nd Size"), "_2nd_size");
  EXPECT_EQ(NodeName("-x"), "_-x");
  EXPECT_EQ(NodeName("svg:path"), "svg_path");
  EXPECT_EQ(NodeName("a\xFFz\x01\n/="), "a_z____");
  EXPECT_EQ(NodeName("\xF0\x9F\x98\x80"), "_");
  EXPECT_EQ(NodeName("xmlns"), "_xmlns");
  EXPECT_EQ(NodeName("XML Id"), "_xml_id");
}

}  // namespace
}  // namespace brackwell
