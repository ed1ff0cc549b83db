#include <ORNHearingTestSDK/contracts/FileManagerContract.h>

#include <atomic>
#include <filesystem>
#include <set>
#include <string>
#include <thread>
#include <utility>

#include <ORNHearingTestSDK/contracts/Checking.h>

namespace orn::contract {
namespace {

using Bytes = std::vector<std::uint8_t>;

struct FilesCheck {
  explicit FilesCheck(FileManagerUnderTest underTest)
      : backend(std::move(underTest)), folder(files().documentsDirectory()), path(folder + "/contract.bin") {}
  ~FilesCheck() {
    std::error_code error;
    std::filesystem::remove(path, error);
  }
  FilesCheck(const FilesCheck&) = delete;
  FilesCheck& operator=(const FilesCheck&) = delete;

  FileManager& files() const { return *backend.files; }

  void write(const Bytes& bytes) const { expect(files().writeAtomically(path, bytes), "a file can't be written"); }

  std::set<std::string> names() const {
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
      names.insert(entry.path().filename().string());
    return names;
  }

  FileManagerUnderTest backend;
  std::string folder, path;
};

const Contract<FilesCheck> kFileManagerContracts[] = {
    {"the documents folder is there, by an absolute path without a slash at its end",
     [](FilesCheck& check) {
       expect(std::filesystem::is_directory(check.folder), "it is not there");
       expect(std::filesystem::path(check.folder).is_absolute(), "its path is not absolute");
       expect(check.folder.back() != '/', "there is a slash");
       expect(check.files().documentsDirectory() == check.folder, "it is another one each time");
     }},

    {"the library's bundles are found by their names, and others are not",
     [](FilesCheck& check) {
       const auto bundle = check.files().resourceBundle("wav.bundle");
       expect(bundle && std::filesystem::is_directory(*bundle), "there is no wav.bundle");
       expect(!check.files().resourceBundle("no such.bundle"), "there is a bundle by another name");
     }},

    {"what was written is read whole",
     [](FilesCheck& check) {
       for (const Bytes& bytes : {Bytes{'o', 'l', 'd'}, Bytes(300'000, 7), Bytes{}, Bytes{0, 255, 13, 10, 26, 0}}) {
         check.write(bytes);
         expect(check.files().contents(check.path) == bytes,
                std::to_string(bytes.size()) + " bytes were written, and others are read");
       }
     }},

    {"a path is UTF-8",
     [](FilesCheck& check) {
       const std::string path = check.folder + "/\xE5\x90\xAC\xE5\x8A\x9B.txt";
       expect(check.files().writeAtomically(path, Bytes{1}), "it can't be written to");
       expect(check.files().contents(path) == Bytes{1}, "it can't be read from");
       expect(check.files().removeFile(path), "it can't be removed");
     }},

    {"writing leaves no other file",
     [](FilesCheck& check) {
       check.write({1});
       const auto before = check.names();
       check.write({2});
       expect(check.names() == before, "there is another file in the folder");
     }},

    {"whoever reads meanwhile sees the old file or the new one",
     [](FilesCheck& check) {
       const Bytes old(100'000, 'o'), fresh(200'000, 'n');
       check.write(old);
       std::atomic<bool> isOver = false;
       std::thread writer = newThread([&] {
         for (int i = 0; i < 30; ++i) (void)check.files().writeAtomically(check.path, i % 2 == 0 ? fresh : old);
         isOver = true;
       });
       bool isWhole = true;
       while (!isOver) {
         const auto seen = check.files().contents(check.path);
         isWhole = isWhole && (seen == old || seen == fresh);
       }
       writer.join();
       expect(isWhole, "something else was seen");
     }},

    {"a write that can't be made returns false",
     [](FilesCheck& check) {
       expect(!check.files().writeAtomically(check.folder + "/no such folder/x", Bytes{1}), "it succeeds");
     }},

    {"a write that breaks off on a full disk returns false, and leaves the old file and no other",
     [](FilesCheck& check) {
       const auto& withFullDisk = needed(check.backend.withFullDisk, "withFullDisk");
       const Bytes old{'o', 'l', 'd'};
       check.write(old);
       const auto before = check.names();
       bool succeeded = true;
       withFullDisk([&] { succeeded = check.files().writeAtomically(check.path, Bytes(100'000, 'n')); });
       expect(!succeeded, "it succeeds");
       expect(check.files().contents(check.path) == old, "the old file is not whole");
       expect(check.names() == before, "there is another file in the folder");
     }},

    {"what is no file has no contents",
     [](FilesCheck& check) {
       expect(!check.files().contents(check.folder + "/missing"), "a file that is not there has some");
       expect(!check.files().contents(check.folder), "a folder has some");
     }},

    {"fileExists() tells whether a file is there",
     [](FilesCheck& check) {
       expect(!check.files().fileExists(check.path), "one that was never written is");
       check.write({});
       expect(check.files().fileExists(check.path), "an empty one is not");
     }},

    {"removeFile() removes a file, and is false where there is none",
     [](FilesCheck& check) {
       check.write({1});
       expect(check.files().removeFile(check.path), "it is false for a file that is there");
       expect(!std::filesystem::exists(check.path), "the file is still there");
       expect(!check.files().removeFile(check.path), "it is true for a file that is not there");
     }},
};

}  // namespace

Report checkFileManager(const std::function<FileManagerUnderTest()>& make) {
  return checkAll<FilesCheck>("FileManager", kFileManagerContracts, make);
}

}  // namespace orn::contract
