#include "fuzz/forms/form_driver.h"

#include <algorithm>
#include <array>
#include <chrono>

#include "common/run_time_error.h"
#include "fuzz/claim.h"
#include "fuzz/decoders/line_bytes.h"

namespace tarnlink {
namespace {

constexpr int kMostBoxes = 400;
constexpr int kMostSent = 2'000;
constexpr std::size_t kLongestText = 40'000;

constexpr std::array<std::string_view, 32> kTexts = {"0",
                                                     "1",
                                                     "-1",
                                                     "2",
                                                     "9",
                                                     "15",
                                                     "16",
                                                     "20",
                                                     "21",
                                                     "255",
                                                     "256",
                                                     "32767",
                                                     "32768",
                                                     "65535",
                                                     "65536",
                                                     "-32769",
                                                     "99999999999999999999",
                                                     "FFFF",
                                                     "1F",
                                                     "a0",
                                                     "G",
                                                     "",
                                                     " ",
                                                     "1,5",
                                                     "1.5",
                                                     "1E99",
                                                     "&H7F",
                                                     "0101",
                                                     "100",
                                                     "Not Assigned",
                                                     "\xC3\xA9",
                                                     "8000"};

// Nothing that a keyboard does not type.
std::string Typed(std::string_view bytes) {
  std::string text(bytes);
  std::erase_if(text, [](char c) { return c < ' ' || c > '~'; });
  return text;
}

// As many rows as a byte can tell of.
int Rows(std::size_t count) { return static_cast<int>(std::min<std::size_t>(count, 256)); }

void ActOn(FormDriver&, CommandButton& it) { it.Press(); }

void ActOn(FormDriver& driver, TextBox& it) {
  if (!it.Enabled || !it.Visible) return;
  if (!it.Locked) {
    std::string text = driver.Text();
    const int most = it.MaxLength;
    if (most > 0 && static_cast<int>(text.size()) > most)
      text.resize(static_cast<std::size_t>(most));
    it.Text = text;
  }
  if (it.LostFocus) it.LostFocus();
}

void ActOn(FormDriver&, CheckBox& it) {
  if (it.Enabled && it.Visible) it.Value = !it.Value;
}

void ActOn(FormDriver& driver, OptionGroup& it) {
  const int index = driver.input().Below(it.count());
  if (it(index).Enabled && it(index).Visible) it.Choose(index);
}

void ActOn(FormDriver& driver, Slider& it) {
  if (it.Enabled) it.SetValue(it.minimum + driver.input().Below(it.maximum - it.minimum + 1));
}

void ActOn(FormDriver& driver, PickBox& it) {
  const int rows = Rows(it.List->size());
  if (rows > 0 && driver.input().Coin()) return it.Pick(driver.input().Below(rows));
  it.Accept(driver.Text());
}

void ActOn(FormDriver& driver, ComboBox& it) {
  if (it.Enabled) it.Text = driver.Text();
}

void ActOn(FormDriver& driver, SpinButton& it) { it.Press(driver.input().Coin() ? 1 : -1); }

void ActOn(FormDriver& driver, ScrollBar& it) {
  if (it.Enabled && it.Visible) it.Value = driver.input().Word() % (it.Max + 1);
}

void ActOn(FormDriver& driver, ListBox& it) {
  const int rows = Rows(it.List->size());
  if (rows > 0 && it.DblClick) it.DblClick(driver.input().Below(rows));
}

void ActOn(FormDriver&, std::function<void()>& it) { it(); }

}  // namespace

FormDriver::FormDriver(FuzzInput& input, FakeWorld& world, Answerer answerer)
    : FormDriver(input, world, answerer, Limits()) {}

FormDriver::FormDriver(FuzzInput& input, FakeWorld& world, Answerer answerer, Limits limits)
    : input_(input), world_(world), answerer_(answerer), limits_(limits) {
  paths_ = {"/home/user/work/file.txt"};
  world_.dialogs().user = [this](const std::string& shown) { return Reply(shown); };
  world_.on_output = [this](FakeSerialPort&, std::string_view bytes) { Heard(bytes); };
}

FormDriver::~FormDriver() {
  world_.faults().Clear();
  world_.on_output = nullptr;
  world_.dialogs().user = nullptr;
}

// --- What is within reach ------------------------------------------------------------------------

void FormDriver::Form(const Control& form, bool is_modal) {
  form_ = &form;
  is_modal_ = is_modal;
}

template <class T>
void FormDriver::Reachable(T& control) {
  reaches_.push_back({[](FormDriver& driver, void* it) { ActOn(driver, *static_cast<T*>(it)); },
                      &control, form_, is_modal_});
}

void FormDriver::AddOne(TextBox& box) {
  Watch(box.Text);
  Reachable(box);
}
void FormDriver::AddOne(PickBox& box) {
  Watch(box.Text);
  Reachable(box);
}
void FormDriver::AddOne(ComboBox& box) {
  Watch(box.Text);
  Reachable(box);
}
void FormDriver::AddOne(CommandButton& button) { Reachable(button); }
void FormDriver::AddOne(CheckBox& box) { Reachable(box); }
void FormDriver::AddOne(OptionGroup& group) { Reachable(group); }
void FormDriver::AddOne(Slider& slider) { Reachable(slider); }
void FormDriver::AddOne(SpinButton& button) { Reachable(button); }
void FormDriver::AddOne(ScrollBar& bar) { Reachable(bar); }
void FormDriver::AddOne(ListBox& list) { Reachable(list); }

void FormDriver::Do(std::function<void()> action) {
  actions_.push_back(std::move(action));
  Reachable(actions_.back());
}

// --- What the input says -------------------------------------------------------------------------

std::string FormDriver::Text() {
  const std::uint8_t which = input_.Byte();
  if (which < 0xC0) return std::string(kTexts[which % kTexts.size()]);
  if (which < 0xFA) return Typed(input_.ShortText());
  return std::string(300, static_cast<char>('0' + which - 0xFA));
}

const std::string& FormDriver::Path() {
  return paths_[static_cast<std::size_t>(input_.Below(static_cast<int>(paths_.size())))];
}

void FormDriver::Run() {
  for (int step = 0; step < limits_.steps && !input_.AtEnd(); ++step) Step();
  Verify();
}

void FormDriver::Step() {
  const int what = input_.Byte();
  if (what < 0x58) {
    Act();
  } else if (what < 0xB8) {
    Line(what);
  } else if (what < 0xF0) {
    Advance();
  } else {
    Machine();
  }
  if (Check) Check();
  if (broken_ != nullptr) throw BrokenClaim(broken_);
}

void FormDriver::Act() {
  if (reaches_.empty()) return;
  const Reach& reach = reaches_[input_.Word() % reaches_.size()];
  if (reach.form != nullptr && !reach.form->Visible) return;
  const bool is_behind = std::any_of(reaches_.begin(), reaches_.end(), [&](const Reach& other) {
    return other.is_modal && other.form != reach.form && other.form->Visible;
  });
  if (is_behind && !reach.is_modal) return;
  is_excused_ = true;
  Guard([&] { reach.act(*this, reach.control); });
}

void FormDriver::Line(int what) {
  if (world_.port_count() == 0) return;
  if (what < 0x88) return Receive(answerer_(input_, last_request_));
  if (what < 0x90) return Receive(answerer_(input_, request_before_));
  if (what < 0xA8) return Receive(OnTheLine(input_, answerer_(input_, last_request_)));
  Receive(std::string(input_.ShortText()));
}

void FormDriver::Receive(const std::string& bytes) {
  if (world_.port_count() == 0) return;
  if (world_.port().PortOpen() && !bytes.empty()) {
    came_ += static_cast<int>(bytes.size());
    came_at_ = world_.now();
  }
  Guard([&] {
    world_.port().Receive(bytes);
    world_.Settle();
  });
}

void FormDriver::Advance() {
  constexpr std::array<int, 8> kSpans = {1, 5, 20, 40, 80, 150, 400, 1'000};
  int span = kSpans[static_cast<std::size_t>(input_.Below(kSpans.size()))];
  span = std::min(span, limits_.milliseconds - passed_);
  passed_ += span;
  Guard([&] { world_.Advance(Milliseconds(span)); });
}

void FormDriver::Machine() {
  if (world_.port_count() == 0) return BreakCall();
  constexpr std::array<int, 4> kLineErrors = {kCommFrame, kCommOverrun, kCommReceiveOver,
                                              kCommTransmitFull};
  switch (const int what = input_.Below(12)) {
    case 0:
      world_.port().Unplug();
      break;
    case 1:
    case 2:
      world_.port().PlugIn();
      world_.port().MakeBusy(false);
      break;
    case 3:
      world_.port().MakeBusy();
      break;
    case 4:
    case 5:
    case 6:
    case 7:
      world_.port().RaiseLineError(kLineErrors[static_cast<std::size_t>(what - 4)]);
      break;
    default:
      BreakCall();
  }
  Guard([&] { world_.Settle(); });
}

void FormDriver::BreakCall() {
  struct Call {
    const char* name;
    int code;
  };
  constexpr std::array<Call, 11> kCalls = {{{"Files.ReadWhole", kPermissionDenied},
                                            {"Files.ReadPieces", kDeviceIo},
                                            {"Files.WriteWhole", kDiskFull},
                                            {"Files.OpenRows", kPathNotFound},
                                            {"Rows.Append", kDiskFull},
                                            {"BigReader.Next", kDeviceIo},
                                            {"BigWriter.HasRoom", kDiskFull},
                                            {"BigWriter.IsFinished", kDiskFull},
                                            {"Port.Open", kPortUnavailable},
                                            {"Port.Output", kDeviceIo},
                                            // An open port is opened anew with them.
                                            {"Port.Settings", kPortUnavailable}}};
  const Call& call = kCalls[static_cast<std::size_t>(input_.Below(kCalls.size()))];
  const int nth = 1 + input_.Below(4);
  world_.faults().Break(call.name, nth, RunTimeError(call.code, "It does not work."));
}

// --- What comes out ------------------------------------------------------------------------------

void FormDriver::Guard(const std::function<void()>& action) {
  try {
    action();
  } catch (const RunTimeError& error) {
    throw BrokenClaim("error " + std::to_string(error.code()) +
                      " leaves a handler: " + error.what());
  }
}

// Claims are told behind the step, for nothing of the program may be asked to carry them.
void FormDriver::Heard(std::string_view bytes) {
  const bool is_under_way = IsUnderWay();
  // What goes out below a box does not count as what follows its answer.
  if (world_.dialogs().up() == 0 && std::exchange(has_answered_, false)) is_excused_ = true;
  if (!is_excused_ && is_under_way) broken_ = "another request goes out while one is under way";
  if (++sent_count_ > kMostSent) broken_ = "requests go out without end";
  came_ = 0;
  // A request that the user has the program send soon behind another one has no more time than
  // that; where a timer of the program runs already, it has none of its own.
  const bool is_users = std::exchange(is_excused_, false);
  const bool is_soon = world_.now() - last_sent_ < Milliseconds(limits_.silence);
  if (!is_users || (!is_soon && !limits_.users_share_timer)) last_sent_ = world_.now();
  request_before_ = std::exchange(last_request_, std::string(bytes));
}

// That a port is opened anew ends nothing: the slave answers all the same.
bool FormDriver::IsUnderWay() const {
  if (last_request_.empty()) return false;
  if (world_.now() - last_sent_ >= Milliseconds(limits_.silence)) return false;
  if (came_ >= static_cast<int>(limits_.length(last_request_))) return false;
  constexpr int kBegun = 5;  // bytes
  const bool may_be_short = limits_.pause > 0 && came_ >= kBegun;
  return !may_be_short || world_.now() - came_at_ < Milliseconds(limits_.pause);
}

ScriptedDialog FormDriver::Reply(const std::string& shown) {
  if (++boxes_ > kMostBoxes) broken_ = "boxes come without end";
  if (shown.find('\0') != std::string::npos) broken_ = "a box has no zero byte";
  if (shown.size() > kLongestText) broken_ = "a box can be read";
  has_answered_ = true;
  ScriptedDialog reply = ReplyOf(shown);
  if (broken_ != nullptr || is_leaving_ || world_.dialogs().up() > 3) return reply;
  const std::uint8_t meanwhile = input_.Byte();
  if (meanwhile < 0xC0) return reply;
  if (meanwhile < 0xE0) reply.While([this] { Line(0x60 + input_.Byte() % 0x50); });
  if (meanwhile >= 0xF8)
    reply.While([this] { world_.port_count() == 0 ? void() : world_.port().Unplug(); });
  const int span = std::min(40 * (meanwhile & 7), limits_.milliseconds - passed_);
  passed_ += span;
  reply.For(Milliseconds(span));
  return reply;
}

ScriptedDialog FormDriver::ReplyOf(const std::string& shown) {
  ScriptedDialog reply("");
  constexpr std::uint8_t kFirstButton = 4;
  const std::uint8_t wish = is_leaving_ ? kFirstButton + 1 : input_.Byte();
  const auto is_a = [&](std::string_view kind) { return shown.compare(0, kind.size(), kind) == 0; };
  if ((wish & 3) == 0 || is_a("preview")) return reply.Cancel();
  if (is_a("input box")) return reply.Give(Text());
  if (is_a("open file") || is_a("save file") || is_a("folder")) return reply.Give(Path());
  if (is_a("colour")) return reply.GiveColour(static_cast<Colour>(input_.Word() * 255 + wish));
  if (is_a("font")) return reply.GiveFont({.name = Text(), .size = static_cast<float>(wish) / 4});
  if (is_a("printer")) return reply.Cancel();
  const std::size_t buttons = shown.rfind('(');
  const auto offers = [&](const char* button) {
    return shown.find(button, buttons) != std::string::npos;
  };
  if (buttons == std::string::npos) return reply.Cancel();
  if (offers("Yes") && offers("No"))
    return reply.Press((wish & 4) != 0 ? Answer::kYes : Answer::kNo);
  if (offers("OK") && offers("Cancel"))
    return reply.Press((wish & 4) != 0 ? Answer::kOk : Answer::kCancel);
  return reply.Cancel();
}

void FormDriver::Verify() {
  if (broken_ != nullptr) throw BrokenClaim(broken_);
  for (const auto* text : texts_) {
    Claim(text->get().find('\0') == std::string::npos, "a text has no zero byte");
    Claim(text->get().size() <= kLongestText, "a text can be read");
  }
}

void FormDriver::Leave(const std::function<void()>& leave) {
  constexpr int kAfterwards = 1'500;  // ms
  world_.faults().Clear();
  is_leaving_ = is_excused_ = true;
  Guard(leave);
  Guard([&] { world_.Settle(); });
  for (int i = 0; i < world_.port_count(); ++i) {
    Claim(!world_.port(i).PortOpen(), "a form that was left has let the port go");
  }
  const std::size_t sent = SentCount();
  is_excused_ = true;
  Guard([&] { world_.Advance(Milliseconds(kAfterwards)); });
  Claim(SentCount() == sent, "a form that was left sends nothing");
  for (int i = 0; i < world_.port_count(); ++i) {
    Claim(!world_.port(i).PortOpen(), "a form that was left opens no port");
  }
  Verify();
}

Micros FormDriver::Milliseconds(int count) const { return std::chrono::milliseconds(count); }

std::size_t FormDriver::SentCount() const { return static_cast<std::size_t>(sent_count_); }

}  // namespace tarnlink
