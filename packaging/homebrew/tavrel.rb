# A formula for those who have this checkout: it builds what is committed in it. From the top of the checkout:
#   brew install --HEAD --formula packaging/homebrew/tavrel.rb
# Written for macOS, where it has not been tried yet.
class Tavrel < Formula
  desc "Read-only view of an iTunes library, for programs and on the command-line"
  license "MIT"
  head "file://#{File.expand_path("../..", __dir__)}", using: :git, branch: "main"

  depends_on "cli11" => :build
  depends_on "cmake" => :build
  depends_on "ninja" => :build
  depends_on "nlohmann-json" => :build
  depends_on "stb" => :build
  depends_on "fmt"
  depends_on "jpeg-turbo"
  depends_on "libdeflate"
  depends_on "libpng"
  depends_on "uriparser"
  depends_on "utf8proc"
  uses_from_macos "sqlite"
  uses_from_macos "zlib"

  def install
    system "cmake", "-S", ".", "-B", "build", "-G", "Ninja",
           "-DTAVREL_BUILD_TESTS=OFF", "-DTAVREL_BUILD_BENCH=OFF", *std_cmake_args
    system "cmake", "--build", "build"
    system "cmake", "--install", "build"
    pkgshare.install "samples/home"
  end

  test do
    assert_match "songs", shell_output("#{bin}/tavrel --home #{pkgshare}/home")
  end
end
