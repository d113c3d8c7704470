#include "libraries/zip_archive.h"

#include <zip.h>

#include <memory>

namespace {

struct TZipCloser {
  void operator()(zip_t* z) const { zip_discard(z); }
};
using TZipHandle = std::unique_ptr<zip_t, TZipCloser>;

TZipHandle openForReading(std::string_view bytes) {
  zip_error_t error;
  zip_error_init(&error);
  zip_source_t* src = zip_source_buffer_create(bytes.data(), bytes.size(), 0, &error);
  if (!src) {
    zip_error_fini(&error);
    throw TZipError("the archive cannot be read");
  }
  zip_t* z = zip_open_from_source(src, ZIP_RDONLY, &error);
  if (!z) {
    zip_source_free(src);
    const std::string what = zip_error_strerror(&error);
    zip_error_fini(&error);
    throw TZipError("not a ZIP archive (" + what + ")");
  }
  zip_error_fini(&error);
  return TZipHandle(z);
}

std::string readEntry(zip_t* z, zip_uint64_t index, const zip_stat_t& st) {
  std::unique_ptr<zip_file_t, int (*)(zip_file_t*)> f(zip_fopen_index(z, index, 0), zip_fclose);
  if (!f) throw TZipError(std::string("entry \"") + st.name + "\" cannot be opened");
  std::string data(static_cast<size_t>(st.size), '\0');
  zip_uint64_t done = 0;
  while (done < st.size) {
    const zip_int64_t n = zip_fread(f.get(), data.data() + done, st.size - done);
    if (n <= 0) throw TZipError(std::string("entry \"") + st.name + "\" is damaged");
    done += static_cast<zip_uint64_t>(n);
  }
  return data;
}

template <typename Visit>
void walkEntries(std::string_view bytes, const TZipLimits& limits, Visit visit) {
  TZipHandle z = openForReading(bytes);
  const zip_int64_t count = zip_get_num_entries(z.get(), 0);
  if (count < 0 || static_cast<uint64_t>(count) > limits.FMaxEntries)
    throw TZipError("the archive holds too many entries");
  uint64_t total = 0;
  for (zip_int64_t i = 0; i < count; ++i) {
    zip_stat_t st;
    zip_stat_init(&st);
    if (zip_stat_index(z.get(), static_cast<zip_uint64_t>(i), 0, &st) != 0 || !(st.valid & ZIP_STAT_NAME))
      throw TZipError("the archive's directory is damaged");
    const std::string name = st.name;
    if (!name.empty() && name.back() == '/') continue;  // a folder
    if (!zipEntryNameIsSafe(name)) throw TZipError("entry \"" + name + "\" leaves its folder");
    total += st.size;
    if (total > limits.FMaxTotalBytes) throw TZipError("the archive unpacks to more than allowed");
    if (!visit(z.get(), static_cast<zip_uint64_t>(i), st)) return;
  }
}

}  // namespace

bool zipEntryNameIsSafe(const std::string& name) {
  if (name.empty() || name.front() == '/' || name.find('\\') != std::string::npos ||
      name.find(':') != std::string::npos || name.find('\0') != std::string::npos)
    return false;
  size_t start = 0;
  while (start <= name.size()) {
    const size_t end = std::min(name.find('/', start), name.size());
    const std::string part = name.substr(start, end - start);
    if (part.empty() || part == "." || part == "..") return false;
    start = end + 1;
  }
  return true;
}

std::vector<TZipEntry> readZipArchive(std::string_view bytes, const TZipLimits& limits) {
  std::vector<TZipEntry> out;
  walkEntries(bytes, limits, [&](zip_t* z, zip_uint64_t i, const zip_stat_t& st) {
    TZipEntry e;
    e.FName = st.name;
    e.FModified = (st.valid & ZIP_STAT_MTIME) ? st.mtime : 0;
    e.FData = readEntry(z, i, st);
    out.push_back(std::move(e));
    return true;
  });
  return out;
}

std::string readZipEntry(std::string_view bytes, const std::string& name, const TZipLimits& limits) {
  std::string data;
  bool found = false;
  walkEntries(bytes, limits, [&](zip_t* z, zip_uint64_t i, const zip_stat_t& st) {
    if (name != st.name) return true;
    data = readEntry(z, i, st);
    found = true;
    return false;
  });
  if (!found) throw TZipError("the archive holds no \"" + name + "\"");
  return data;
}

std::string writeZipArchive(const std::vector<TZipEntry>& entries) {
  zip_error_t error;
  zip_error_init(&error);
  zip_source_t* out = zip_source_buffer_create(nullptr, 0, 0, &error);
  zip_error_fini(&error);
  if (!out) throw TZipError("no memory for an archive");
  zip_source_keep(out);
  zip_t* z = zip_open_from_source(out, ZIP_TRUNCATE, nullptr);
  if (!z) {
    zip_source_free(out);
    throw TZipError("an archive cannot be made");
  }
  for (const TZipEntry& e : entries) {
    zip_source_t* data = zip_source_buffer(z, e.FData.data(), e.FData.size(), 0);
    const zip_int64_t index = data ? zip_file_add(z, e.FName.c_str(), data, ZIP_FL_ENC_UTF_8) : -1;
    if (index < 0) {
      if (data) zip_source_free(data);
      zip_discard(z);
      zip_source_free(out);
      throw TZipError("entry \"" + e.FName + "\" cannot be added");
    }
    zip_set_file_compression(z, static_cast<zip_uint64_t>(index), ZIP_CM_DEFLATE, 6);
    if (e.FModified > 0) zip_file_set_mtime(z, static_cast<zip_uint64_t>(index), e.FModified, 0);
  }
  if (zip_close(z) != 0) {
    zip_discard(z);
    zip_source_free(out);
    throw TZipError("the archive cannot be written");
  }
  std::string bytes;
  if (zip_source_open(out) == 0) {
    zip_source_seek(out, 0, SEEK_END);
    const zip_int64_t size = zip_source_tell(out);
    zip_source_seek(out, 0, SEEK_SET);
    if (size > 0) {
      bytes.resize(static_cast<size_t>(size));
      zip_source_read(out, bytes.data(), static_cast<zip_uint64_t>(size));
    }
    zip_source_close(out);
  }
  zip_source_free(out);
  return bytes;
}
