// SPDX-License-Identifier: MIT
#include <algorithm>
#include <ostream>

#include <CLI/CLI.hpp>

#include "host/Choice.h"
#include "host/Command.h"
#include "host/CommandTable.h"
#include "host/OutputTargets.h"
#include "host/ReaderFlags.h"
#include "host/RenderRequest.h"
#include "host/Sentences.h"
#include "statistics/AnalysisKind.h"

namespace tallyscope {

namespace {

constexpr int kLeastPixels = 100;
constexpr int kMostPixels = 20000;

class CRenderCommand : public CCommand {
 public:
  void AddOptions(CLI::App& app) override;
  CString CheckOptions() const override;
  int Run(std::ostream& out, std::ostream& err) override;

 private:
  bool FindFields(CHostTable& table, std::ostream& err);

  RenderRequest request_;
  CString field_;
  CString field2_;
  CString colour_;
  CString size_;
  bool force_ = false;
  ReaderOptions reader_;
};

void CRenderCommand::AddOptions(CLI::App& app) {
  app.add_option("FILE", request_.file, "the table; '-' is standard input")->required();
  Choices<RenderPage> pages;
  for (const auto& kind : kRenderPages) pages.emplace_back(kind.name, kind.page);
  AddChoice<RenderPage>(app, "--page", pages, "the plot to draw", [this](const auto& page) {
    request_.page = page;
  })->required();
  const auto name = [&](const char* option, CString& value, const char* description) {
    app.add_option(option, value, description)->type_name("NAME");
  };
  name("--field", field_, "field or axis to draw; the first field when not given");
  name("--field2", field2_, "field or axis of a bi-scatter's Y; the second field when not given");
  name("--colour", colour_, "field that colours the marks");
  name("--size", size_, "field that sizes the marks");
  app.add_flag("--perceptual", request_.perceptual, "colours even in lightness in place of blue to red");
  app.add_option_function<CString>(
         "--select", [this](const CString& text) { request_.selection.Add(SelectionStep::kWhere, text, true); },
         "stations to show as selected")
      ->type_name("'FIELD in LOW..HIGH'")
      ->trigger_on_parse();
  const auto pixels = [&](const char* option, int& value, const char* description) {
    app.add_option(option, value, description)->check(CLI::Range(kLeastPixels, kMostPixels))->capture_default_str();
  };
  pixels("--width", request_.width, "pixels from left to right");
  pixels("--height", request_.height, "pixels from top to bottom");
  app.add_option("-o,--output", request_.target, "the picture: a .png, .svg or .pdf file")
      ->required()
      ->type_name("OUT.png|svg|pdf");
  AddForceFlag(app, force_);
  AddReaderFlags(app, reader_);
}

CString CRenderCommand::CheckOptions() const {
  const RenderPageKind& kind = GetRenderPageKind(request_.page);
  if (!field2_.empty() && GetAnalysisKind(kind.mode).fields < 2) return "--field2 goes with --page bi-scatter";
  if (!field_.empty() && !kind.takesField) {
    return "A map draws the axes; --colour and --size show fields on it";
  }
  if (!size_.empty() && !kind.takesSize) return "--size goes with --page bi-scatter or map";
  if (!colour_.empty() && !kind.takesColour) {
    return "A histogram has no --colour; that goes with the other pages";
  }
  const CString sentence = request_.selection.Check();
  return sentence.empty() ? CheckReaderFlags(reader_) : sentence;
}

bool CRenderCommand::FindFields(CHostTable& table, std::ostream& err) {
  const auto find = [&](const CString& name, int otherwise, int& dim) {
    dim = name.empty() ? otherwise : FindDimForCommand(table, request_.file, name, err);
    return dim != CHostTable::kNoDim || name.empty();
  };
  const int fields = table.GetValueSize();
  const int first = fields > 0 ? 0 : -1;
  if (!find(field_, first, request_.field)) return false;
  // The second field, or the first where that is X already.
  const int second = request_.field == 0 && fields > 1 ? 1 : fields > 0 && request_.field != 0 ? 0 : -1;
  if (!find(field2_, second, request_.field2)) return false;
  if (!find(colour_, request_.colour, request_.colour) || !find(size_, request_.size, request_.size)) return false;
  const AnalysisKind& analysis = GetAnalysisKind(GetRenderPageKind(request_.page).mode);
  if (table.GetSpatialSize() < analysis.axes) {
    Say(err, request_.file + " has no two axes for a map; name them by --x and --y.");
    return false;
  }
  const int least = table.GetSpatialSize() > 0 ? -table.GetSpatialSize() : 0;
  if (std::min(request_.field, analysis.fields > 1 ? request_.field2 : 0) < least ||
      (fields == 0 && table.GetSpatialSize() == 0)) {
    Say(err, request_.file + " has too few columns of numbers for this plot.");
    return false;
  }
  return true;
}

int CRenderCommand::Run(std::ostream&, std::ostream& err) {
  if (!MayWrite({{request_.file}, {request_.target}}, force_, err)) return kExitBadInput;
  OpenedTable opened = OpenForCommand(request_.file, reader_, err);
  if (!opened.table) return kExitBadInput;
  if (!FindFields(*opened.table, err)) return kExitBadInput;
  for (const auto& warning : opened.warnings) Say(err, warning);
  return RunRender(*opened.table, request_, err);
}

}  // namespace

std::unique_ptr<CCommand> MakeRenderCommand() {
  return std::make_unique<CRenderCommand>();
}

}  // namespace tallyscope
