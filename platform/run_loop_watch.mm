#include "platform/run_loop_watch.h"

#import "platform/ZQMEventWatcher.h"
#include "platform/autorelease_pool.h"
#include "platform/event_hub.h"
#include "platform/handled_sources.h"
#include "platform/run_loops.h"

#include <cxxabi.h>
#include <exception>
#include <utility>

namespace zqm::platform {
namespace {

thread_local int keepers = 0;
thread_local std::exception_ptr keptNative;
thread_local NSException* keptException = nil; // with a reference

void dispatchInPool() {
    runInPool([] {
        if (EventHub::shared().dispatch()) {
            noteHandledSource();
        }
    });
}

} // namespace

bool watchOnMainRunLoop(int descriptor) {
    const AutoreleasePool pool;
    NSRunLoop* const runLoop = mainRunLoop();
    if (runLoop == nil) {
        return false;
    }
    ZQMEventWatcher* const watcher = [[ZQMEventWatcher alloc] initWithDescriptor:descriptor];
    [runLoop addEvent:reinterpret_cast<void*>(static_cast<intptr_t>(descriptor))
                 type:ET_RDESC
              watcher:watcher
              forMode:NSDefaultRunLoopMode];
    return true;
}

bool recoverOnMainRunLoop() {
    constexpr NSTimeInterval kMoment = 0.1;
    const AutoreleasePool pool;
    NSRunLoop* const runLoop = mainRunLoop();
    NSTimer* const timer = [NSTimer timerWithTimeInterval:kMoment
                                                   target:[ZQMEventWatcher class]
                                                 selector:@selector(recover:)
                                                 userInfo:nil
                                                  repeats:NO];
    [runLoop addTimer:timer forMode:NSDefaultRunLoopMode];
    return runLoop != nil;
}

ExceptionKeeper::ExceptionKeeper() {
    ++keepers;
}

ExceptionKeeper::~ExceptionKeeper() {
    --keepers;
}

void ExceptionKeeper::rethrowKept() {
    if (keptNative) {
        std::rethrow_exception(std::exchange(keptNative, nullptr));
    }
    if (keptException != nil) {
        zqmThrowException([std::exchange(keptException, nil) autorelease]);
    }
}

} // namespace zqm::platform

@implementation ZQMEventWatcher

- (instancetype)initWithDescriptor:(int)descriptor {
    self = [super init];
    if (self != nil) {
        _descriptor = descriptor;
    }
    return self;
}

+ (void)recover:(NSTimer*)timer {
    (void)timer;
    zqm::platform::EventHub::shared().recover();
}

- (void)receivedEvent:(void*)data type:(RunLoopEventType)type extra:(void*)extra forMode:(NSString*)mode {
    using namespace zqm::platform;
    (void)extra;
    if (EventHub::shared().descriptor() != _descriptor) {
        // A fork of the host: what is ready here is the parent's.
        [[NSRunLoop currentRunLoop] removeEvent:data type:type forMode:mode all:YES];
        return;
    }
    if (keepers == 0) {
        dispatchInPool();
        return;
    }
    if (keptNative || keptException != nil) {
        return; // that comes first
    }
    try {
        keptException = zqmCatchException([](void* /*context*/) { dispatchInPool(); }, nullptr);
    } catch (const abi::__forced_unwind&) {
        throw;
    } catch (...) {
        keptNative = std::current_exception();
    }
}

@end
