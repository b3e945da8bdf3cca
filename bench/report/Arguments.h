// A program's name, its arguments, and its way out. The library that reads arguments is behind it, compiled
// once: its header takes ten seconds in each file that includes it.
#pragma once

#include <cstdint>
#include <functional>
#include <limits>
#include <memory>
#include <string>
#include <vector>

namespace tavrel::bench {

// Where a value stands is where it is written, and what stands there before is the default that --help
// shows. The places must outlive the object.
class Arguments {
 public:
  Arguments(const std::string& program, const std::string& purpose);
  ~Arguments();
  Arguments(const Arguments&) = delete;
  Arguments& operator=(const Arguments&) = delete;

  // What --help says last.
  void Explain(const std::string& text);

  // Options; the name is as it is written, or several, as in "-o,--output".
  void Text(const std::string& name, std::string& value, const std::string& help);
  void Texts(const std::string& name, std::vector<std::string>& values, const std::string& help);
  void OneOf(const std::string& name, std::string& value, const std::vector<std::string>& choices,
             const std::string& help);
  void Number(const std::string& name, std::uint64_t& value, const std::string& help,
              std::uint64_t least = 0,
              std::uint64_t most = std::numeric_limits<std::uint64_t>::max());
  void Number(const std::string& name, std::uint32_t& value, const std::string& help,
              std::uint32_t least, std::uint32_t most);
  // The arguments without a name: files, which must be there.
  void File(const std::string& name, std::string& file, const std::string& help);
  void Files(const std::string& name, std::vector<std::string>& files, const std::string& help);

  // The option that was named last must be given, and shows no default.
  void Require();

  [[nodiscard]] std::string program() const;

  // Reads the arguments and calls `work`. Result: the exit code; 2 for bad arguments, 1 when `work`
  // ended with an exception, whose message goes to standard error.
  int Run(int argc, char** argv, const std::function<void()>& work);

 private:
  struct Reader;

  std::unique_ptr<Reader> reader_;
};

}  // namespace tavrel::bench
