// Writes small PDFs for tests: raw objects with a right cross-reference table. Header only.
#pragma once

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <map>
#include <random>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

namespace testpdf {

/**
 * Objects are numbered from 1. The first two are the catalog and the page tree, which finish()
 * writes from the pages added; everything else is written as given, right or wrong.
 */
class PdfBuilder {
public:
  PdfBuilder() : objects_(2) {}

  int add(const std::string& body) {
    objects_.push_back(body);
    return static_cast<int>(objects_.size());
  }
  int addStream(const std::string& data, const std::string& entries = "") {
    return add(stream(data, entries));
  }
  /** A number to refer to before the object is known. */
  int reserve() { return add("null"); }
  void set(int number, const std::string& body) {
    objects_[static_cast<std::size_t>(number) - 1] = body;
  }

  static std::string stream(const std::string& data, const std::string& entries = "") {
    return "<<" + entries + "/Length " + std::to_string(data.size()) + ">>\nstream\n" + data +
           "\nendstream";
  }
  static std::string ref(int number) { return std::to_string(number) + " 0 R"; }

  /** One of the 14 standard fonts. */
  int addFont(const std::string& name, const std::string& entries = "/Encoding/WinAnsiEncoding") {
    return add("<</Type/Font/Subtype/Type1/BaseFont/" + name + entries + ">>");
  }

  /** A page of 600 x 800 points unless `entries` has a MediaBox. Returns its object number. */
  int addPage(const std::string& content, const std::string& resources,
              const std::string& entries = "") {
    return addPageObject(ref(addStream(content)), resources, entries);
  }
  int addPageObject(const std::string& contents, const std::string& resources,
                    const std::string& entries = "") {
    const auto unless = [&entries](const char* key, const std::string& entry) {
      return entries.find(key) == std::string::npos ? entry : std::string();
    };
    pages_.push_back(named("p" + std::to_string(pages_.size() + 1)));
    set(pages_.back(), "<</Type/Page/Parent 2 0 R" + unless("/Contents", "/Contents " + contents) +
                           unless("/Resources", "/Resources<<" + resources + ">>") +
                           unless("/MediaBox", "/MediaBox[0 0 600 800]") + entries + ">>");
    return pages_.back();
  }

  /** The number of an object by its name in addText, from before it is known as well. */
  int named(const std::string& name) {
    const auto [entry, isNew] = names_.try_emplace(name, 0);
    if (isNew) {
      entry->second = reserve();
    }
    return entry->second;
  }

  // Adds what is written as text, a line each; lines that begin with a blank go on with the one
  // before. In all but the data of a stream, @name stands for a reference to the object.
  //   name = body               an object; "pages" is the page tree, in place of the right one
  //   name = entries | data     a stream
  //   name = entries |? 40000   a stream of so many bytes that no compression makes fewer
  //   page entries | content    a page, p1, p2 ... in turn; with `resources` when it has none
  //   catalog entries           and the same for the trailer
  void addText(const std::string& text, const std::string& resources = "") {
    std::istringstream lines(std::regex_replace(text, std::regex("\n +"), " "));
    for (std::string line; std::getline(lines, line);) {
      const std::size_t bar = line.find(" | ");
      const std::size_t end = std::min(bar, line.find(" |? "));
      const bool isStream = end != std::string::npos;
      const std::string head = withReferences(line.substr(0, end));
      const std::string data = !isStream    ? ""
                               : end == bar ? line.substr(bar + 3)
                                            : noise(std::stoul(line.substr(end + 4)));
      const std::size_t equals = head.find(" = ");
      if (head.rfind("page", 0) == 0 && equals == std::string::npos) {
        addPage(data, resources, head.substr(4));
      } else if (head.rfind("catalog", 0) == 0) {
        addToCatalog(head.substr(7));
      } else if (head.rfind("trailer", 0) == 0) {
        addToTrailer(head.substr(7));
      } else {
        const std::string body = head.substr(equals + 3);
        set(named(head.substr(0, equals)), isStream ? stream(data, body) : body);
      }
    }
  }

  void addToCatalog(const std::string& entries) { catalog_ += entries; }
  void addToTrailer(const std::string& entries) { trailer_ += entries; }
  /** What the page tree claims instead of the truth. */
  void claimPages(long long count) { claimed_ = count; }

  std::string finish() const {
    std::vector<std::string> all = objects_;
    std::string kids;
    for (const int page : pages_)
      kids += ref(page) + " ";
    all[0] = "<</Type/Catalog/Pages 2 0 R" + catalog_ + ">>";
    if (all[1].empty())
      all[1] = "<</Type/Pages/Kids[" + kids + "]/Count " +
               std::to_string(claimed_ < 0 ? static_cast<long long>(pages_.size()) : claimed_) +
               ">>";
    std::string file = "%PDF-1.7\n%\xE2\xE3\xCF\xD3\n";
    std::string table = "xref\n0 " + std::to_string(all.size() + 1) + "\n0000000000 65535 f \n";
    for (std::size_t i = 0; i < all.size(); ++i) {
      char line[32];
      std::snprintf(line, sizeof line, "%010zu 00000 n \n", file.size());
      table += line;
      file += std::to_string(i + 1) + " 0 obj\n" + all[i] + "\nendobj\n";
    }
    const std::size_t start = file.size();
    return file + table + "trailer\n<</Size " + std::to_string(all.size() + 1) + "/Root 1 0 R" +
           trailer_ + ">>\nstartxref\n" + std::to_string(start) + "\n%%EOF\n";
  }

  static std::string noise(std::size_t count) {
    static std::mt19937 random;
    std::string bytes(count, ' ');
    std::generate(bytes.begin(), bytes.end(), [] { return static_cast<char>(random()); });
    return bytes;
  }

  void write(const std::filesystem::path& path) const { writeFile(path, finish()); }
  void write(const std::string& path) const { writeFile(path, finish()); }

  static void writeFile(const std::filesystem::path& path, const std::string& bytes) {
    std::ofstream(path, std::ios::binary)
        .write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  }
  /** The name is UTF-8, whatever the system takes narrow ones for. */
  static void writeFile(const std::string& path, const std::string& bytes) {
    writeFile(std::filesystem::path(std::u8string(path.begin(), path.end())), bytes);
  }

private:
  std::string withReferences(std::string text) {
    const std::regex reference("@(\\w+)");
    for (std::smatch name; std::regex_search(text, name, reference);) {
      text.replace(static_cast<std::size_t>(name.position()),
                   static_cast<std::size_t>(name.length()), ref(named(name[1])));
    }
    return text;
  }

  std::vector<std::string> objects_;
  std::map<std::string, int> names_{{"pages", 2}};
  std::vector<int> pages_;
  std::string catalog_;
  std::string trailer_;
  long long claimed_ = -1;
};

} // namespace testpdf
