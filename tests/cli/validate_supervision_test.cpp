// Work in processes of its own that ends well, badly, or not at all.

#include "cli/validate/supervision.h"

#include "cli/command_line/failure.h"
#include "cli/system/interruption.h"
#include "cli/system/process_usage.h"
#include "cli/validate/validation.h"
#include "tests/support/eventually.h"
#include "tests/support/process_table.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace zqm::cli {

void PrintTo(const Finding& finding, std::ostream* out) {
    *out << nameOf(finding.verdict) << ": " << finding.text;
}

namespace {

using support::isAlive;
using testing::ElementsAre;
using testing::EndsWith;
using testing::IsEmpty;
using testing::StartsWith;

constexpr Findings::Seconds kAmple{60};
constexpr Findings::Seconds kShort{0.2};

[[noreturn]] void hang() {
    while (true) {
        pause();
    }
}

// Sanitizers would take the signal for a report of their own.
[[noreturn]] void crash(int number) {
    std::raise(number);
    std::abort();
}

struct Supervised {
    std::vector<Finding> findings;
    SupervisedEnd end;
};

Supervised supervised(const std::function<void(Findings&)>& work, Findings::Seconds limit = kAmple) {
    Supervised result;
    result.end = supervise(work, {.limit = limit, .isSeparate = true, .found = [&](const Finding& finding) {
                                      result.findings.push_back(finding);
                                  }});
    return result;
}

// Waits, since whoever is killed may be seen for a while.
bool hasGone(pid_t process) {
    return support::eventually([&] { return !isAlive(process); });
}

TEST(Supervision, WorkThatFindsNothing) {
    const Supervised result = supervised([](Findings&) {});
    EXPECT_THAT(result.findings, IsEmpty());
    EXPECT_EQ(result.end.output, "");
    EXPECT_FALSE(result.end.isInterrupted);
}

TEST(Supervision, FindingsComeInOrder) {
    const std::string longText(200000, 'x');
    const Supervised result = supervised([&](Findings& findings) {
        findings.pass("good");
        findings.warn("odd");
        findings.fail("");
        findings.skip(longText);
    });
    EXPECT_THAT(result.findings, ElementsAre(Finding{Verdict::Pass, "good"}, Finding{Verdict::Warning, "odd"},
                                             Finding{Verdict::Fail, ""}, Finding{Verdict::Skip, longText}));
}

TEST(Supervision, WhatIsThrownIsAFailureAtItsStep) {
    const Supervised result = supervised([](Findings& findings) {
        findings.at("one");
        throw std::runtime_error("");
    });
    EXPECT_THAT(result.findings, ElementsAre(Finding{Verdict::Fail, "threw \"\", at: one"}));
    EXPECT_THAT(supervised([](Findings& findings) {
                    findings.at("two");
                    throw 2; // NOLINT(hicpp-exception-baseclass): plugins may
                }).findings,
                ElementsAre(Finding{Verdict::Fail, "threw what is no std::exception, at: two"}));
}

TEST(Supervision, WhatTheCheckItselfSaysByAnExceptionIsToldAsItIs) {
    EXPECT_THAT(supervised([](Findings& findings) {
                    findings.at("loading");
                    throw Failure("it is no library");
                }).findings,
                ElementsAre(Finding{Verdict::Fail, "it is no library"}));
}

TEST(Supervision, ACrashIsToldWithItsSignalAndStep) {
    const Supervised result = supervised([](Findings& findings) {
        findings.warn("before");
        findings.at("one");
        findings.at("two");
        crash(SIGSEGV);
    });
    EXPECT_THAT(result.findings, ElementsAre(Finding{Verdict::Warning, "before"},
                                             Finding{Verdict::Crash, "SIGSEGV, at: two"}));
    EXPECT_THAT(supervised([](Findings&) { crash(SIGABRT); }).findings,
                ElementsAre(Finding{Verdict::Crash, "SIGABRT"}));
}

TEST(Supervision, SignalsThatTheCommandIgnoresEndTheWork) {
    const auto earlier = std::signal(SIGPIPE, SIG_IGN);
    const Supervised result = supervised([](Findings&) { std::raise(SIGPIPE); });
    std::signal(SIGPIPE, earlier);
    EXPECT_THAT(result.findings, ElementsAre(Finding{Verdict::Crash, "SIGPIPE"}));
}

TEST(Supervision, SignalsThatTheCommandHandlesEndTheWork) {
    const Interruption interruption;
    const DelayedEnd delayedEnd;
    for (const auto& [number, name] : {std::pair(SIGHUP, "SIGHUP"), std::pair(SIGUSR1, "SIGUSR1")}) {
        EXPECT_THAT(supervised([number = number](Findings&) { std::raise(number); }).findings,
                    ElementsAre(Finding{Verdict::Crash, name}));
    }
}

TEST(Supervision, AnExitIsNoEndOfWork) {
    EXPECT_THAT(supervised([](Findings& findings) {
                    findings.at("leaving");
                    _exit(3);
                }).findings,
                ElementsAre(Finding{Verdict::Fail, "ended the program with exit code 3, at: leaving"}));
    EXPECT_THAT(supervised([](Findings&) { _exit(0); }).findings,
                ElementsAre(Finding{Verdict::Fail, "ended the program with exit code 0"}));
}

TEST(Supervision, WorkThatClosesEveryDescriptorIsNotTakenForGood) {
    const Supervised result = supervised([](Findings&) {
        for (int descriptor = 0; descriptor < 256; ++descriptor) {
            close(descriptor);
        }
    });
    EXPECT_THAT(result.findings,
                ElementsAre(Finding{Verdict::Fail, "closed descriptors that are not its own, or ended "
                                                   "the program with exit code 125"}));
}

TEST(Supervision, AHangIsEndedAtTheLimit) {
    const Supervised result = supervised(
        [](Findings& findings) {
            findings.pass(std::to_string(getpid()));
            findings.at("waiting");
            hang();
        },
        kShort);
    ASSERT_EQ(result.findings.size(), 2U);
    EXPECT_EQ(result.findings[1], (Finding{Verdict::Fail, "exceeded 0.2 s, at: waiting"}));
    EXPECT_FALSE(isAlive(std::stoi(result.findings[0].text)));
}

TEST(Supervision, AStoppedProcessIsAHang) {
    EXPECT_THAT(supervised([](Findings&) { std::raise(SIGSTOP); }, kShort).findings,
                ElementsAre(Finding{Verdict::Fail, "exceeded 0.2 s"}));
}

// Whoever keeps the time isn't stopped with it.
TEST(Supervision, AStoppedProcessGroupIsAHang) {
    const Supervised result = supervised(
        [](Findings& findings) {
            findings.apart("part", [](Findings& inner) {
                inner.at("stopping");
                kill(0, SIGSTOP);
            });
            findings.pass("beyond");
        },
        kShort);
    EXPECT_THAT(result.findings, ElementsAre(Finding{Verdict::Fail, "part: exceeded 0.2 s, at: stopping"},
                                             Finding{Verdict::Pass, "beyond"}));
}

TEST(Supervision, AStoppedSupervisorIsAHang) {
    const Supervised result = supervised(
        [](Findings& findings) {
            findings.apart("part", [](Findings&) {
                std::this_thread::sleep_for(std::chrono::milliseconds(500)); // it tells that it waits
                kill(getppid(), SIGSTOP);
                hang();
            });
        },
        Findings::Seconds(2));
    EXPECT_THAT(result.findings, ElementsAre(Finding{Verdict::Fail, "exceeded 2 s, at: part"}));
}

// Longer than a process that waits for another one has after the limit.
TEST(Supervision, StepsOfAPartMayTakeLongInAll) {
    const Supervised result = supervised(
        [](Findings& findings) {
            findings.apart("part", [](Findings& inner) {
                for (int step = 0; step < 16; ++step) {
                    inner.at(std::to_string(step));
                    std::this_thread::sleep_for(std::chrono::milliseconds(500));
                }
            });
            findings.pass("beyond");
        },
        Findings::Seconds(2));
    EXPECT_THAT(result.findings, ElementsAre(Finding{Verdict::Pass, "beyond"}));
}

TEST(Supervision, AllOfTheStepsHaveALimit) {
    std::vector<Finding> findings;
    supervise(
        [](Findings& inside) {
            inside.apart("part", [](Findings& inner) {
                while (true) {
                    inner.at("turn");
                    std::this_thread::sleep_for(std::chrono::milliseconds(10));
                }
            });
        },
        {.limit = kAmple,
         .isSeparate = true,
         .found = [&](const Finding& finding) { findings.push_back(finding); },
         .limitInAll = kShort});
    ASSERT_EQ(findings.size(), 1U);
    EXPECT_THAT(findings[0].text, StartsWith("exceeded 0.2 s in all"));
}

// In a process of its own, which the work stops, and which goes on some time before the work ends.
void expectNoHangOfAStoppedProgram(const Supervision& supervision) {
    const pid_t program = fork();
    if (program == 0) {
        supervise(
            [](Findings&) {
                kill(getppid(), SIGSTOP);
                std::this_thread::sleep_for(std::chrono::milliseconds(3000));
            },
            supervision);
        _exit(0);
    }
    int status = 0;
    ASSERT_EQ(waitpid(program, &status, WUNTRACED), program);
    ASSERT_TRUE(WIFSTOPPED(status));
    std::this_thread::sleep_for(std::chrono::milliseconds(2500));
    kill(program, SIGCONT);
    ASSERT_EQ(waitpid(program, &status, 0), program);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
}

TEST(Supervision, WhileTheProgramIsStoppedNoTimePasses) {
    const auto found = [](const Finding&) { _exit(1); };
    constexpr Findings::Seconds kLimit{2.4};
    expectNoHangOfAStoppedProgram({.limit = kLimit, .isSeparate = true, .found = found});
    expectNoHangOfAStoppedProgram(
        {.limit = kAmple, .isSeparate = true, .found = found, .limitInAll = kLimit});
}

// As the program itself lacks something: nothing is told of the work, and the rest of it is not done.
void expectNoFindingWith(void (*limit)(), const std::string& cause) {
    std::vector<Finding> findings;
    try {
        supervise(
            [limit](Findings& inside) {
                limit();
                inside.apart("part", [](Findings& inner) { inner.fail("done"); });
                inside.fail("beyond");
            },
            {.limit = kAmple, .isSeparate = true, .found = [&](const Finding& finding) {
                 findings.push_back(finding);
             }});
        ADD_FAILURE() << "the want of what is needed is not told";
    } catch (const SupervisionFailure& failure) {
        EXPECT_EQ(failure.what(), cause);
    }
    EXPECT_THAT(findings, IsEmpty());
}

// The sanitizers look through a pipe whether memory is there, and take its lack for a fault.
#ifndef __SANITIZE_ADDRESS__
TEST(Supervision, TheWantOfDescriptorsIsNoFinding) {
    expectNoFindingWith(
        [] {
            const rlimit none{0, 0};
            setrlimit(RLIMIT_NOFILE, &none);
        },
        "can't make a pipe: Too many open files");
}
#endif

TEST(Supervision, TheWantOfProcessesIsNoFinding) {
    expectNoFindingWith(
        [] {
            constexpr uid_t kNobodyElse = 54321; // whom the limit holds, as it doesn't hold root
            if (geteuid() == 0 && setuid(kNobodyElse) != 0) {
                throw std::runtime_error("can't become another user");
            }
            const rlimit none{0, 0};
            setrlimit(RLIMIT_NPROC, &none);
        },
        "can't start a process: Resource temporarily unavailable");
}

// Those that are free in this process: what supervises and what is supervised get some of them.
std::vector<int> freeDescriptors() {
    std::vector<int> free;
    for (int descriptor = 3; descriptor < 256; ++descriptor) {
        if (fcntl(descriptor, F_GETFD) < 0) {
            free.push_back(descriptor);
        }
    }
    return free;
}

void writeTo(const std::vector<int>& descriptors, std::string_view text) {
    for (const int descriptor : descriptors) {
        [[maybe_unused]] const ssize_t written = write(descriptor, text.data(), text.size());
    }
}

std::string message(MessageKind kind, const std::string& text) {
    const MessageHead head{0, kind, static_cast<std::uint32_t>(text.size())};
    return std::string(reinterpret_cast<const char*>(&head), sizeof(head)) + text;
}

TEST(Supervision, NobodyElseCanTellOfTheWork) {
    const Finding spoiled{Verdict::Fail,
                          "spoiled the results: it wrote to descriptors that are not its own, at: writing"};
    const std::vector<int> descriptors = freeDescriptors();
    for (const std::string& text : {message(MessageKind::Done, ""), message(MessageKind::Found, "\x7fodd"),
                                    message(MessageKind::Found, ""),
                                    message(static_cast<MessageKind>(77), ""), std::string(100, '\xff')}) {
        EXPECT_THAT(supervised([&](Findings& findings) {
                        findings.at("writing");
                        writeTo(descriptors, text);
                        hang();
                    }).findings,
                    ElementsAre(spoiled));
    }
}

TEST(Supervision, AVerdictThatIsNoneIsNoFinding) {
    EXPECT_THAT(supervised([](Findings& findings) {
                    findings.add({static_cast<Verdict>(127), "odd"});
                }).findings,
                ElementsAre(Finding{Verdict::Fail,
                                    "spoiled the results: it wrote to descriptors that are not its own"}));
}

TEST(Supervision, APartSpoilsItsOwnResultsAlone) {
    const std::vector<int> descriptors = freeDescriptors();
    const Supervised result = supervised([&](Findings& findings) {
        findings.apart("part", [&](Findings&) {
            writeTo(descriptors, message(MessageKind::Done, ""));
            hang();
        });
        findings.warn("beyond");
    });
    EXPECT_THAT(result.findings,
                ElementsAre(Finding{Verdict::Fail, "part: spoiled the results: it wrote to descriptors that "
                                                   "are not its own"},
                            Finding{Verdict::Warning, "beyond"}));
}

// Whoever reads all descriptors takes nothing of what is told.
TEST(Supervision, WorkHasOneDescriptorMore) {
    const std::string one = std::to_string(support::openDescriptors() + 1);
    const auto count = [](Findings& findings) { findings.pass(std::to_string(support::openDescriptors())); };
    EXPECT_THAT(supervised(count).findings, ElementsAre(Finding{Verdict::Pass, one}));
    EXPECT_THAT(supervised([&](Findings& findings) { findings.apart("", count); }).findings,
                ElementsAre(Finding{Verdict::Pass, one}));
}

TEST(Supervision, AProcessThatSomebodyElseReapedHasEnded) {
    const auto earlier = std::signal(SIGCHLD, SIG_IGN);
    const Supervised result = supervised([](Findings&) { crash(SIGKILL); });
    std::signal(SIGCHLD, earlier);
    EXPECT_THAT(result.findings, ElementsAre(Finding{Verdict::Fail, "ended the program"}));
}

// As on a busy machine, where nobody may look meanwhile.
TEST(Supervision, WhatWasToldIsHeardAfterTheEnd) {
    constexpr int kFindings = 2000; // about 40 KiB, less than a pipe holds
    int heard = 0;
    int others = 0;
    supervise(
        [](Findings& findings) {
            for (int index = 0; index < kFindings; ++index) {
                findings.fail("it");
            }
        },
        {.limit = kAmple,
         .isSeparate = true,
         .found = [&](const Finding& finding) { ++(finding.text == "it" ? heard : others); },
         .begun =
             [](pid_t process) {
                 siginfo_t end{};
                 EXPECT_EQ(waitid(P_PID, static_cast<id_t>(process), &end, WEXITED | WNOWAIT), 0);
             }});
    EXPECT_EQ(heard, kFindings);
    EXPECT_EQ(others, 0);
}

// More than a pipe holds.
TEST(Supervision, OfMuchOutputTheEndIsKept) {
    const Supervised result = supervised([](Findings& findings) {
        for (int line = 0; line < 100000; ++line) {
            std::printf("line %d\n", line);
        }
        std::fflush(stdout);
        std::fputs("the last of errors\n", stderr);
        findings.fail("told");
    });
    EXPECT_THAT(result.findings, ElementsAre(Finding{Verdict::Fail, "told"}));
    EXPECT_THAT(result.end.output, EndsWith("line 99999\nthe last of errors\n"));
    EXPECT_LE(result.end.output.size(), 4096U);
}

TEST(Supervision, WhatWorkLeavesRunningIsEndedAndNotWaitedFor) {
    for (const bool crashes : {false, true}) {
        const Supervised result = supervised([crashes](Findings& findings) {
            const pid_t child = fork(); // it holds the pipes
            if (child == 0) {
                hang();
            }
            findings.pass(std::to_string(child));
            if (crashes) {
                crash(SIGKILL);
            }
        });
        ASSERT_EQ(result.findings.size(), crashes ? 2U : 1U);
        EXPECT_TRUE(hasGone(std::stoi(result.findings[0].text)));
    }
}

pid_t startSession() {
    const pid_t child = fork();
    if (child == 0) {
        setsid();
        hang();
    }
    while (getsid(child) != child) {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return child;
}

TEST(Supervision, WhatIsLeftInAnotherSessionIsEnded) {
    for (const bool isApart : {false, true}) {
        for (const bool crashes : {false, true}) {
            const auto work = [crashes](Findings& findings) {
                findings.pass(std::to_string(startSession()));
                if (crashes) {
                    crash(SIGKILL);
                }
            };
            const Supervised result = supervised(
                [&](Findings& findings) { isApart ? void(findings.apart("", work)) : work(findings); });
            ASSERT_EQ(result.findings.size(), crashes ? 2U : 1U);
            EXPECT_TRUE(hasGone(std::stoi(result.findings[0].text)));
        }
    }
}

TEST(Supervision, AnInterruptionEndsWhatAPartLeftInAnotherSession) {
    const Interruption interruption;
    pid_t left = 0;
    supervise(
        [](Findings& findings) {
            findings.apart("", [](Findings& inner) {
                inner.pass(std::to_string(startSession()));
                hang();
            });
        },
        {.limit = kAmple, .isSeparate = true, .found = [&](const Finding& finding) {
             left = std::stoi(finding.text);
             std::raise(SIGINT);
         }});
    ASSERT_NE(left, 0);
    EXPECT_TRUE(hasGone(left));
}

TEST(Supervision, WhatRanBeforeGoesOn) {
    const pid_t earlier = startSession();
    supervised([](Findings&) { startSession(); });
    EXPECT_TRUE(isAlive(earlier));
    kill(earlier, SIGKILL);
    waitpid(earlier, nullptr, 0);
}
TEST(Supervision, OfWorkThatForksOneGoesOn) {
    const Supervised result = supervised([](Findings& findings) {
        const pid_t child = fork();
        findings.pass(child == 0 ? "the child" : "the parent");
    });
    EXPECT_THAT(result.findings, ElementsAre(Finding{Verdict::Pass, "the parent"}));
}

TEST(Supervision, APartOfItsOwnMayCrashAndHang) {
    const Supervised result = supervised(
        [](Findings& findings) {
            const Verdict first = findings.apart("first", [](Findings& inner) {
                inner.at("deep");
                crash(SIGABRT);
            });
            findings.apart("second", [](Findings&) { hang(); });
            findings.apart("third", [](Findings&) { hang(); });
            const Verdict last = findings.apart("last", [](Findings& inner) { inner.warn("odd"); });
            findings.pass(std::string(nameOf(first)) + " " + nameOf(last));
            crash(SIGTERM);
        },
        kShort);
    EXPECT_THAT(result.findings,
                ElementsAre(Finding{Verdict::Crash, "first: SIGABRT, at: deep"},
                            Finding{Verdict::Fail, "second: exceeded 0.2 s"},
                            Finding{Verdict::Fail, "third: exceeded 0.2 s"},
                            Finding{Verdict::Warning, "last: odd"}, Finding{Verdict::Pass, "crash warning"},
                            Finding{Verdict::Crash, "SIGTERM, at: last"}));
}

// Starts what is no child of this process, and waits until it is in that state, as proc(5) has it.
void startOrphan(void (*work)(), char state) {
    const pid_t between = fork();
    if (between == 0) {
        if (fork() == 0) {
            work();
        }
        _exit(0);
    }
    waitpid(between, nullptr, 0);
    std::vector<pid_t> orphans = support::childrenOf(getppid());
    std::erase(orphans, getpid());
    while (orphans.size() != 1 || support::stateOf(orphans.front()) != state) {
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
}

// As the check of growth counts them, where one such orphan is all that there is.
std::vector<Finding> processesWith(void (*work)(), char state) {
    return supervised([&](Findings& findings) {
               findings.apart("", [&](Findings& inner) {
                   startOrphan(work, state);
                   inner.pass(std::to_string(processUsage().processes));
               });
           })
        .findings;
}

TEST(Supervision, AnOrphanThatRunsIsCounted) {
    EXPECT_THAT(processesWith([] { hang(); }, 'S'), ElementsAre(Finding{Verdict::Pass, "1"}));
}

TEST(Supervision, AnOrphanThatEndedIsNotCountedWhateverItsName) {
    EXPECT_THAT(processesWith(
                    [] {
                        prctl(PR_SET_NAME, "a) b");
                        _exit(0);
                    },
                    'Z'),
                ElementsAre(Finding{Verdict::Pass, "0"}));
}

TEST(Supervision, AnOrphanWhoseFirstThreadAloneEndedIsCounted) {
    EXPECT_THAT(processesWith(
                    [] {
                        std::thread(hang).detach();
                        syscall(SYS_exit, 0);
                    },
                    'Z'),
                ElementsAre(Finding{Verdict::Pass, "1"}));
}

[[noreturn]] void startBriefProcesses() {
    while (true) {
        const pid_t brief = fork();
        if (brief == 0) {
            _exit(0);
        }
        waitpid(brief, nullptr, 0);
    }
}

// Each of them may go while its status is read.
TEST(Supervision, ProcessesThatComeAndGoDisturbNoCount) {
    EXPECT_THAT(supervised([](Findings& findings) {
                    findings.apart("", [](Findings& inner) {
                        for (int starter = 0; starter < 4; ++starter) {
                            if (fork() == 0) {
                                startBriefProcesses();
                            }
                        }
                        for (int round = 0; round < 500; ++round) {
                            inner.at("round " + std::to_string(round));
                            processUsage();
                        }
                    });
                }).findings,
                IsEmpty());
}

TEST(Supervision, AnInterruptionEndsTheWorkAndItsParts) {
    const Interruption interruption;
    std::vector<pid_t> processes;
    const auto note = [&](const Finding& finding) {
        processes.push_back(std::stoi(finding.text.substr(finding.text.rfind(' ') + 1)));
        if (processes.size() == 3) {
            std::raise(SIGINT);
        }
    };
    const SupervisedEnd end = supervise(
        [](Findings& findings) {
            findings.pass("process " + std::to_string(getpid()));
            findings.apart("part", [](Findings& inner) {
                inner.pass(std::to_string(getpid()));
                const pid_t child = fork();
                if (child == 0) {
                    hang();
                }
                inner.pass(std::to_string(child));
                hang();
            });
        },
        {.limit = kAmple, .isSeparate = true, .found = note});
    EXPECT_TRUE(end.isInterrupted);
    ASSERT_EQ(processes.size(), 3U);
    for (const pid_t process : processes) {
        EXPECT_TRUE(hasGone(process));
    }
}

CheckResult resultOf(void (*run)(const Subject&, Findings&), Findings::Seconds limit = kAmple) {
    return runCheck({.name = "sample", .summary = "does", .run = run},
                    {.library = "lib.so", .seed = 7, .folder = "."}, limit)
        .result;
}

TEST(CheckResults, TheWorstFindingCounts) {
    EXPECT_EQ(resultOf([](const Subject&, Findings&) {}).verdict, Verdict::Pass);
    EXPECT_EQ(resultOf([](const Subject&, Findings& findings) { findings.skip("no reason"); }).verdict,
              Verdict::Skip);
    EXPECT_EQ(resultOf([](const Subject&, Findings& findings) {
                  findings.fail("bad");
                  findings.warn("odd");
              }).verdict,
              Verdict::Fail);
    EXPECT_EQ(resultOf([](const Subject&, Findings& findings) {
                  findings.fail("bad");
                  crash(SIGBUS);
              }).verdict,
              Verdict::Crash);
}

TEST(CheckResults, TheSubjectReachesTheCheck) {
    const CheckResult result = resultOf([](const Subject& subject, Findings& findings) {
        findings.pass(subject.library + std::to_string(subject.seed));
    });
    EXPECT_THAT(result.findings, ElementsAre(Finding{Verdict::Pass, "lib.so7"}));
    EXPECT_EQ(result.check, "sample");
    EXPECT_EQ(result.summary, "does");
}

TEST(CheckResults, OutputIsToldOfFailuresOnly) {
    EXPECT_EQ(resultOf([](const Subject&, Findings&) { std::puts("said"); }).output, "");
    EXPECT_EQ(resultOf([](const Subject&, Findings& findings) {
                  std::puts("said");
                  findings.fail("bad");
              }).output,
              "said\n");
}

TEST(CheckResults, OfVeryManyFindingsTheFirstAreKeptAndTheWorst) {
    const CheckResult result = resultOf([](const Subject&, Findings& findings) {
        for (int number = 0; number < 5000; ++number) {
            findings.warn("odd");
        }
        crash(SIGSEGV);
    });
    ASSERT_EQ(result.findings.size(), 102U);
    EXPECT_EQ(result.findings[100], (Finding{Verdict::Crash, "SIGSEGV"}));
    EXPECT_EQ(result.findings[101].text, "4900 more like these");
    EXPECT_EQ(result.verdict, Verdict::Crash);
}

TEST(CheckResults, OfVeryManyFindingsTheLastIsKept) {
    const CheckResult result = resultOf(
        [](const Subject&, Findings& findings) {
            for (int number = 0; number < 5000; ++number) {
                findings.fail("bad");
            }
            findings.at("waiting");
            hang();
        },
        kShort);
    ASSERT_EQ(result.findings.size(), 102U);
    EXPECT_EQ(result.findings[100], (Finding{Verdict::Fail, "4900 more like these"}));
    EXPECT_EQ(result.findings[101], (Finding{Verdict::Fail, "exceeded 0.2 s, at: waiting"}));
}

TEST(CheckResults, OneFindingMoreThanAreKeptIsToldAsItIs) {
    const CheckResult result = resultOf([](const Subject&, Findings& findings) {
        for (int number = 1; number <= 101; ++number) {
            findings.warn(std::to_string(number));
        }
    });
    ASSERT_EQ(result.findings.size(), 101U);
    EXPECT_EQ(result.findings[100], (Finding{Verdict::Warning, "101"}));
}

TEST(CheckResults, ACheckIsSkippedWithoutTheSuccessOfWhatItNeeds) {
    const Check check{.name = "later", .summary = "", .run = nullptr, .needs = "first"};
    EXPECT_EQ(causeToSkip(check, {}), "");
    EXPECT_EQ(causeToSkip(check, {{.check = "first", .summary = "", .verdict = Verdict::Warning}}), "");
    EXPECT_EQ(causeToSkip(check, {{.check = "other", .summary = "", .verdict = Verdict::Fail}}), "");
    for (const Verdict verdict : {Verdict::Skip, Verdict::Fail, Verdict::Crash}) {
        EXPECT_EQ(causeToSkip(check, {{.check = "first", .summary = "", .verdict = verdict}}),
                  "first has not passed");
    }
}

} // namespace
} // namespace zqm::cli
