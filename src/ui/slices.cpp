#include "ui/slices.h"

#include <QElapsedTimer>
#include <utility>

#include "ui/attempt.h"

namespace qvrcom::ui {
namespace {

constexpr qint64 kSliceMilliseconds = 10;

}  // namespace

Slices::Slices() {
  timer_.callOnTimeout([this] { run_slice(); });
}

void Slices::start(Work work) {
  work_ = std::move(work);
  timer_.start(0);
}

void Slices::cancel() {
  timer_.stop();
}

void Slices::run_slice() {
  QElapsedTimer clock;
  clock.start();
  bool more = true;
  const auto fault = fault_of([&] {
    while (more && clock.elapsed() < kSliceMilliseconds)
      more = work_.step();
  });
  if (!fault && more) return work_.progress();
  timer_.stop();
  // The work may start the next one, which replaces it.
  const Work ended = std::exchange(work_, {});
  fault ? ended.failed(*fault) : ended.done();
}

}  // namespace qvrcom::ui
