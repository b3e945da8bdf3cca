#include "bench/report/Arguments.h"

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <charconv>
#include <cstdio>
#include <exception>
#include <system_error>

namespace tavrel::bench {
namespace {

// CLI11 itself takes "-1" for the largest number there is, and what is too large as well.
template <class Whole>
CLI::Validator Between(Whole least, Whole most) {
  const auto check = [least, most](const std::string& text) -> std::string {
    Whole number = 0;
    const char* end = text.data() + text.size();
    const std::from_chars_result parsed = std::from_chars(text.data(), end, number);
    const bool whole = parsed.ec == std::errc() && parsed.ptr == end;
    if (whole && number >= least && number <= most) return "";
    return fmt::format("\"{}\" is not a whole number from {} to {}", text, least, most);
  };
  return CLI::Validator(check, "");
}

}  // namespace

struct Arguments::Reader {
  Reader(const std::string& program, const std::string& purpose) : app(purpose, program) {}

  template <class Value>
  CLI::Option& Add(const std::string& name, Value& value, const std::string& help) {
    last = app.add_option(name, value, help);
    return *last;
  }

  CLI::App app;
  CLI::Option* last = nullptr;
};

Arguments::Arguments(const std::string& program, const std::string& purpose)
    : reader_(std::make_unique<Reader>(program, purpose)) {}

Arguments::~Arguments() = default;

void Arguments::Explain(const std::string& text) {
  reader_->app.footer(text);
}

void Arguments::Text(const std::string& name, std::string& value, const std::string& help) {
  reader_->Add(name, value, help).capture_default_str();
}

void Arguments::Texts(const std::string& name, std::vector<std::string>& values,
                      const std::string& help) {
  reader_->Add(name, values, help);
}

void Arguments::OneOf(const std::string& name, std::string& value,
                      const std::vector<std::string>& choices, const std::string& help) {
  reader_->Add(name, value, help).check(CLI::IsMember(choices))->capture_default_str();
}

void Arguments::Number(const std::string& name, std::uint64_t& value, const std::string& help,
                       std::uint64_t least, std::uint64_t most) {
  reader_->Add(name, value, help).check(Between(least, most))->capture_default_str();
}

void Arguments::Number(const std::string& name, std::uint32_t& value, const std::string& help,
                       std::uint32_t least, std::uint32_t most) {
  reader_->Add(name, value, help).check(Between(least, most))->capture_default_str();
}

void Arguments::File(const std::string& name, std::string& file, const std::string& help) {
  reader_->Add(name, file, help).required()->check(CLI::ExistingFile);
}

void Arguments::Files(const std::string& name, std::vector<std::string>& files,
                      const std::string& help) {
  reader_->Add(name, files, help).required()->check(CLI::ExistingFile);
}

void Arguments::Require() {
  reader_->last->required()->default_str("");
}

std::string Arguments::program() const {
  return reader_->app.get_name();
}

int Arguments::Run(int argc, char** argv, const std::function<void()>& work) {
  try {
    reader_->app.parse(argc, argv);
    work();
    return 0;
  } catch (const CLI::ParseError& error) {
    return reader_->app.exit(error) == 0 ? 0 : 2;
  } catch (const std::exception& error) {
    fmt::print(stderr, "{}: {}\n", program(), error.what());
    return 1;
  }
}

}  // namespace tavrel::bench
