// WorkThread: a thread running its own Scheduler.
#include <zel/diag/log.h>
#include <zel/text/thread_local_string.h>
#include <zel/thread/work_thread.h>

#include "os/os.h"
#include "sched/scheduler_parts.h"

#include <exception>

namespace zel {

namespace {

const char *PriorityWord(int priority) {
  switch (priority) {
    case -2: return "lowest";
    case -1: return "low";
    case 0: return "normal";
    case 1: return "high";
    case 2: return "highest";
    default: return "...";
  }
}

}  // namespace

WorkThread::WorkThread() : WorkThread(strptr()) {}

WorkThread::WorkThread(const strptr &name)
    : scheduler_(CreateScheduler(name, nullptr, false, this)) {
  if (scheduler_) scheduler_->SetAutoDeleteFlag(true);
}

WorkThread::~WorkThread() {
  if (thread_.Handle() != nullptr) {
    scheduler_->RequestDeactivate();
    thread_.Wait(-1);
  }
  // The Scheduler may outlive this object, waiting for its deletion on the global Scheduler.
  if (scheduler_) SchedulerAccess::ForgetHost(scheduler_.get());
}

bool WorkThread::Start() {
  thread_.Wait(0);
  if (thread_.Handle() != nullptr) return true;
  if (!scheduler_) return false;
  // Active from here on, so that a deactivation asked for at any time ends the thread: asked
  // before the thread attaches, its check waits in the queue until then.
  SchedulerAccess::Activate(scheduler_.get());
  return thread_.Start_(&WorkThread::Body, this);
}

bool WorkThread::SetPriority(int priority) {
  const bool set = os::SetThreadPriority(thread_.Handle(), priority);
  if (LogCategory::n_global_clients >= 1) {
    ThreadLocalString line;
    *line << scheduler_->GetName() << ": Thread priority set to " << PriorityWord(priority)
          << "\r\n";
    PrintLog(*line);
  }
  return set;
}

bool WorkThread::OnInit() { return true; }

bool WorkThread::DoWork() {
  scheduler_->Run();
  return false;
}

void WorkThread::OnExit() {}

void WorkThread::OnSchedulerDying(Scheduler *) {}

void WorkThread::Body(void *self) {
  auto *w = static_cast<WorkThread *>(self);
  Scheduler *s = w->scheduler_.get();
  SetThreadLocalScheduler(s);
  s->SetTrackedObjScheduler(s);
  if (LogCategory::n_global_clients >= 1) {
    ThreadLocalString line;
    *line << "Thread " << os::CurrentThreadId() << " is " << s->GetName() << "\r\n";
    PrintLog(*line);
  }
  s->AddCounters(cstring(s->GetName().view()));
  try {
    if (w->OnInit())
      while (w->DoWork()) {
      }
  } catch (...) {
    SchedulerAccess::ReportFailure(std::current_exception());
  }
  s->RequestDeactivate();
  s->Run();  // once more, so that the deactivation finishes
  w->OnExit();
}

}  // namespace zel
