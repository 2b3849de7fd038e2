// A user, a line and a machine that act on the models of forms as an input says: whatever is within
// reach is clicked and typed into, sound answers, damaged ones and noise come in, time passes,
// boxes are answered, cables pulled and files broken.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "common/control_array.h"
#include "common/controls.h"
#include "common/dialog_controls.h"
#include "common/scroll_bar.h"
#include "fuzz/forms/answers.h"
#include "fuzz/fuzz_input.h"
#include "support/fake_world.h"

namespace tarnlink {

class FormDriver {
 public:
  // What a sound slave says to a request; empty if it says nothing.
  using Answerer = std::string (*)(FuzzInput& input, const std::string& request);

  struct Limits {
    int steps = 40;
    int milliseconds = 3'000;
    // A request is under way until as many bytes have come as an answer to it has, or for so many
    // ms; 0 claims nothing.
    std::size_t (*length)(const std::string& request) = AnyAnswerLength;
    int silence = 400;
    // ms of a quiet line that end an answer of Modbus, which may be too short; 0 for none.
    int pause = 0;
    // What the user sends does not begin the program's time for an answer anew.
    bool users_share_timer = false;
  };

  // Both outlive it; it answers the world's dialogs and hears what goes out.
  FormDriver(FuzzInput& input, FakeWorld& world, Answerer answerer);
  FormDriver(FuzzInput& input, FakeWorld& world, Answerer answerer, Limits limits);
  ~FormDriver();
  FormDriver(const FormDriver&) = delete;
  FormDriver& operator=(const FormDriver&) = delete;

  // --- What is within reach. Controls belong to the form that was named last; those of a form that
  // is hidden are out of reach, and so are all others while a modal one is seen ---

  void Form(const Control& form, bool is_modal = false);
  template <class... Controls>
  void Add(Controls&... controls) {
    (AddOne(controls), ...);
  }
  template <class T>
  void AddAll(FixedArray<T>& controls) {
    for (int i = controls.first(); i <= controls.last(); ++i) AddOne(controls(i));
  }
  // Anything else that the user does.
  void Do(std::function<void()> action);
  // Texts that the user sees but cannot change.
  template <class... Labels>
  void Show(const Labels&... labels) {
    (texts_.push_back(&labels.Caption), ...);
  }
  void Watch(const Property<std::string>& text) { texts_.push_back(&text); }
  // Files that the user chooses among.
  void Offer(std::vector<std::string> paths) { paths_ = std::move(paths); }
  // Looked at after each step.
  std::function<void()> Check;

  // --- The run ---

  // Acts until the input has ended, but does not go beyond the limits.
  void Run();
  // Leaves the form, with every fault mended and every box closed; nothing is open afterwards and
  // nothing more goes out.
  void Leave(const std::function<void()>& leave);
  // No RunTimeError may leave the action.
  void Guard(const std::function<void()>& action);

  FuzzInput& input() { return input_; }
  std::string Text();
  const std::string& Path();

 private:
  struct Reach {
    void (*act)(FormDriver& driver, void* control);
    void* control;
    const Control* form;
    bool is_modal;
  };

  void AddOne(CommandButton& button);
  void AddOne(TextBox& box);
  void AddOne(CheckBox& box);
  void AddOne(OptionGroup& group);
  void AddOne(Slider& slider);
  void AddOne(PickBox& box);
  void AddOne(ComboBox& box);
  void AddOne(SpinButton& button);
  void AddOne(ScrollBar& bar);
  void AddOne(ListBox& list);
  template <class T>
  void Reachable(T& control);

  void Step();
  void Act();
  void Line(int what);
  void Machine();
  void BreakCall();
  void Advance();
  void Receive(const std::string& bytes);
  ScriptedDialog Reply(const std::string& shown);
  ScriptedDialog ReplyOf(const std::string& shown);
  void Heard(std::string_view bytes);
  bool IsUnderWay() const;
  void Verify();
  Micros Milliseconds(int count) const;
  std::size_t SentCount() const;

  FuzzInput& input_;
  FakeWorld& world_;
  Answerer answerer_;
  Limits limits_;
  const Control* form_ = nullptr;
  bool is_modal_ = false;
  std::vector<Reach> reaches_;
  std::deque<std::function<void()>> actions_;
  std::vector<const Property<std::string>*> texts_;
  std::vector<std::string> paths_;
  int passed_ = 0;  // ms
  int boxes_ = 0;
  int sent_count_ = 0;
  std::string last_request_;
  std::string request_before_;
  Micros last_sent_{-1'000'000'000};
  int came_ = 0;               // bytes since then
  Micros came_at_{};           // the last of them
  bool is_excused_ = false;    // the user has done something that one more request may follow
  bool has_answered_ = false;  // a box, the same
  bool is_leaving_ = false;    // the user goes: whether that is wanted is answered with yes
  const char* broken_ = nullptr;
};

}  // namespace tarnlink
