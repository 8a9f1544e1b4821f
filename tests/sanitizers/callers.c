// Part of every program that is built with the sanitizer for addresses. For each allocation that notes its
// callers, which it has from _Unwind_Backtrace: libgcc interprets the unwinding tables anew for each frame
// each time, and programs that load Cocoa spend most of their time in that. Here what the tables say of an
// address is remembered. Where they say something unusual, libgcc is asked.

#include <dlfcn.h>
#include <stdatomic.h>
#include <stdbool.h>
#include <stddef.h>
#include <stdint.h>
#include <string.h>

typedef int (*VisitCaller)(void* context, void* argument);

// What of libgcc is in no header: where the table has what it says of the function at an address.
struct Bases {
    void* text;
    void* data;
    void* function;
};
const uint8_t* _Unwind_Find_FDE(void* address, struct Bases* bases);

// The end of the first thread's stack.
extern void* __libc_stack_end;

__attribute__((visibility("default"))) int _Unwind_Backtrace(VisitCaller visit, void* argument);
__attribute__((visibility("default"))) uintptr_t _Unwind_GetIP(void* context);

enum {
    kMostCallers = 64, // more than the sanitizer asks for (malloc_context_size in cmake/Testing.cmake)
    kEndOfStack = 5,
    kWord = 8,
};

// The registers that matter, by their numbers in the tables.
enum { kRbp = 6, kRsp = 7, kReturnAddress = 16 };

typedef enum { kUnknown, kOutermost, kFromRsp, kFromRbp, kAtRbp } FrameKind;
typedef enum { kUnchanged, kSavedFromFrame, kSavedFromRbp } RbpKind;

// How to get from a function's registers to those of its caller: where its frame ends, and where it keeps the
// caller's rbp.
typedef union {
    struct {
        int32_t end; // the frame's, in bytes from rsp or rbp; with kAtRbp it is read there
        int16_t rbp; // in bytes from the frame's end or from rbp
        uint8_t frameKind;
        uint8_t rbpKind;
    };
    uint64_t bits;
} Rule;

static const Rule kNoRule = {.frameKind = kUnknown};

// ---- Reading the tables

typedef struct {
    const uint8_t* at;
    const uint8_t* end;
} Reader;

static uint64_t readBytes(Reader* reader, size_t size) {
    uint64_t value = 0;
    if ((size_t)(reader->end - reader->at) < size) {
        reader->at = reader->end;
        return 0;
    }
    memcpy(&value, reader->at, size);
    reader->at += size;
    return value;
}

static uint64_t readLeb128(Reader* reader, bool isSigned) {
    uint64_t value = 0;
    unsigned shift = 0;
    uint8_t byte = 0;
    do {
        byte = (uint8_t)readBytes(reader, 1);
        value |= (uint64_t)(byte & 0x7F) << shift;
        shift += 7;
    } while ((byte & 0x80) != 0 && shift < 63);
    if (isSigned && (byte & 0x40) != 0)
        value |= ~(uint64_t)0 << shift;
    return value;
}

static uint64_t readUnsigned(Reader* reader) {
    return readLeb128(reader, false);
}

static int64_t readSigned(Reader* reader) {
    return (int64_t)readLeb128(reader, true);
}

// Bytes of a pointer that is encoded so; 0 for one of no fixed size.
static size_t sizeOfPointer(uint8_t encoding) {
    switch (encoding & 0x07) {
    case 0x00:
        return kWord;
    case 0x03:
        return sizeof(uint32_t);
    case 0x04:
        return kWord;
    default:
        return 0;
    }
}

// What a group of functions have in common.
typedef struct {
    Reader instructions;
    uint64_t codeUnit;
    int64_t dataUnit;
    uint8_t pointerEncoding;
    bool hasAugmentation;
} Common;

static Reader recordAt(const uint8_t* record) {
    uint32_t length = 0;
    memcpy(&length, record, sizeof length);
    const uint8_t* content = record + sizeof length;
    return (Reader){content, length == UINT32_MAX ? content : content + length};
}

static bool readCommon(const uint8_t* record, Common* common) {
    Reader reader = recordAt(record);
    readBytes(&reader, sizeof(uint32_t));
    const uint64_t version = readBytes(&reader, 1);
    const char* augmentation = (const char*)reader.at;
    while (readBytes(&reader, 1) != 0) {
    }
    common->codeUnit = readUnsigned(&reader);
    common->dataUnit = readSigned(&reader);
    const uint64_t returnAddress = version == 1 ? readBytes(&reader, 1) : readUnsigned(&reader);
    common->hasAugmentation = *augmentation == 'z';
    common->pointerEncoding = 0;
    if (returnAddress != kReturnAddress || (*augmentation != '\0' && !common->hasAugmentation))
        return false;
    if (common->hasAugmentation) {
        const uint64_t size = readUnsigned(&reader);
        const uint8_t* afterwards = reader.at + size;
        for (const char* letter = augmentation + 1; *letter != '\0'; ++letter) {
            if (*letter == 'R')
                common->pointerEncoding = (uint8_t)readBytes(&reader, 1);
            else if (*letter == 'L')
                readBytes(&reader, 1);
            else if (*letter == 'P')
                readBytes(&reader, sizeOfPointer((uint8_t)readBytes(&reader, 1)));
            else
                return false; // a signal's frame
        }
        reader.at = afterwards;
    }
    common->instructions = reader;
    return reader.at <= reader.end;
}

// ---- Interpreting them

typedef struct {
    uint64_t frameRegister; // its end is counted from; or 0: read at rbp
    int64_t end;
    int64_t rbp;
    RbpKind rbpKind;
    bool isOutermost;
    bool isUnknown;
} State;

static void setRegister(State* state, uint64_t number, RbpKind kind, int64_t offset) {
    if (number == kRbp) {
        state->rbpKind = kind;
        state->rbp = offset;
    } else if (number == kReturnAddress && (kind != kSavedFromFrame || offset != -kWord)) {
        state->isUnknown = true;
    }
}

static void setUnusual(State* state, uint64_t number) {
    if (number == kRbp || number == kReturnAddress)
        state->isUnknown = true;
}

// What GCC says of frames that it aligns: their end stands beside rbp, and so does the caller's rbp.
static void takeExpression(Reader* reader, State* state, bool isEndOfFrame, uint64_t number) {
    enum { kFromRbpBy = 0x76, kReadThere = 0x06 };
    const uint64_t size = readUnsigned(reader);
    Reader expression = {reader->at, reader->at + size};
    reader->at = expression.end;
    const bool isFromRbp = readBytes(&expression, 1) == kFromRbpBy;
    const int64_t offset = readSigned(&expression);
    if (isEndOfFrame) {
        const bool isReadThere = readBytes(&expression, 1) == kReadThere;
        state->frameRegister = 0;
        state->end = offset;
        state->isUnknown |= !isFromRbp || !isReadThere || expression.at != expression.end;
    } else if (number == kRbp && isFromRbp && expression.at == expression.end) {
        setRegister(state, kRbp, kSavedFromRbp, offset);
    } else {
        setUnusual(state, number);
    }
}

enum { kMostRemembered = 8 };

// Up to what holds at an address, which is the offset into its function.
static void interpret(Reader reader, const Common* common, const State* initial, uint64_t address,
                      State* state) {
    State remembered[kMostRemembered];
    size_t depth = 0;
    uint64_t reached = 0;
    while (reader.at < reader.end && reached <= address && !state->isUnknown) {
        const uint8_t instruction = (uint8_t)readBytes(&reader, 1);
        const uint8_t operand = instruction & 0x3F;
        uint64_t number = 0;
        switch (instruction & 0xC0) {
        case 0x40:
            reached += operand * common->codeUnit;
            continue;
        case 0x80:
            setRegister(state, operand, kSavedFromFrame, (int64_t)readUnsigned(&reader) * common->dataUnit);
            continue;
        case 0xC0:
            if (operand == kRbp)
                setRegister(state, kRbp, initial->rbpKind, initial->rbp);
            else
                setUnusual(state, operand);
            continue;
        default:
            break;
        }
        switch (instruction) {
        case 0x00:
            break; // nop
        case 0x02:
            reached += readBytes(&reader, 1) * common->codeUnit;
            break;
        case 0x03:
            reached += readBytes(&reader, 2) * common->codeUnit;
            break;
        case 0x04:
            reached += readBytes(&reader, 4) * common->codeUnit;
            break;
        case 0x05: // offset_extended
            number = readUnsigned(&reader);
            setRegister(state, number, kSavedFromFrame, (int64_t)readUnsigned(&reader) * common->dataUnit);
            break;
        case 0x07: // undefined
            number = readUnsigned(&reader);
            if (number == kReturnAddress)
                state->isOutermost = true;
            else
                setUnusual(state, number);
            break;
        case 0x08: // same_value
            setRegister(state, readUnsigned(&reader), kUnchanged, 0);
            break;
        case 0x09: // register
            setUnusual(state, readUnsigned(&reader));
            readUnsigned(&reader);
            break;
        case 0x0A: // remember_state
            if (depth < kMostRemembered)
                remembered[depth++] = *state;
            else
                state->isUnknown = true;
            break;
        case 0x0B: // restore_state
            if (depth > 0)
                *state = remembered[--depth];
            else
                state->isUnknown = true;
            break;
        case 0x0C: // def_cfa
            state->frameRegister = readUnsigned(&reader);
            state->end = (int64_t)readUnsigned(&reader);
            break;
        case 0x0D:
            state->frameRegister = readUnsigned(&reader);
            break;
        case 0x0E:
            state->end = (int64_t)readUnsigned(&reader);
            break;
        case 0x0F:
            takeExpression(&reader, state, true, 0);
            break;
        case 0x10: // expression
            number = readUnsigned(&reader);
            takeExpression(&reader, state, false, number);
            break;
        case 0x2E:
            readUnsigned(&reader);
            break; // GNU_args_size
        default:
            state->isUnknown = true;
            break;
        }
    }
}

static bool fits(int64_t value, int64_t limit) {
    return value >= -limit && value < limit;
}

static Rule ruleIn(const State* state) {
    Rule rule = {.end = (int32_t)state->end, .rbp = (int16_t)state->rbp, .rbpKind = state->rbpKind};
    if (state->isUnknown || !fits(state->end, INT32_MAX) || !fits(state->rbp, INT16_MAX))
        return kNoRule;
    if (state->isOutermost)
        rule.frameKind = kOutermost;
    else if (state->frameRegister == kRsp)
        rule.frameKind = kFromRsp;
    else if (state->frameRegister == kRbp)
        rule.frameKind = kFromRbp;
    else if (state->frameRegister == 0)
        rule.frameKind = kAtRbp;
    else
        return kNoRule;
    return rule;
}

static Rule readRule(uintptr_t returnAddress) {
    // The call before it may be the function's last instruction.
    const uintptr_t address = returnAddress - 1;
    struct Bases bases;
    const uint8_t* record = _Unwind_Find_FDE((void*)address, &bases);
    if (record == NULL)
        return (Rule){.frameKind = kOutermost};
    Reader reader = recordAt(record);
    const uint8_t* distanceFrom = reader.at;
    const int32_t distance = (int32_t)readBytes(&reader, sizeof distance);
    Common common;
    if (!readCommon(distanceFrom - distance, &common))
        return kNoRule;
    const size_t pointer = sizeOfPointer(common.pointerEncoding);
    readBytes(&reader, pointer);
    readBytes(&reader, pointer);
    if (common.hasAugmentation)
        reader.at += readUnsigned(&reader);
    if (pointer == 0 || reader.at > reader.end)
        return kNoRule;
    State state = {.frameRegister = kRsp};
    interpret(common.instructions, &common, &state, 0, &state);
    const State initial = state;
    interpret(reader, &common, &initial, address - (uintptr_t)bases.function, &state);
    return ruleIn(&state);
}

// ---- Remembering

enum { kPlaces = 1 << 16 };

// Several threads may write a place at a time: what doesn't belong together is not taken for a rule.
static struct {
    _Atomic uint64_t addressAndRule;
    _Atomic uint64_t rule;
} places[kPlaces];

static Rule ruleFor(uintptr_t address) {
    const uint64_t mixed = address * 0x9E3779B97F4A7C15U;
    const size_t place = mixed >> 48;
    Rule rule = {.bits = atomic_load_explicit(&places[place].rule, memory_order_relaxed)};
    const uint64_t both = atomic_load_explicit(&places[place].addressAndRule, memory_order_relaxed);
    if ((both ^ rule.bits) != address) {
        rule = readRule(address);
        atomic_store_explicit(&places[place].rule, rule.bits, memory_order_relaxed);
        atomic_store_explicit(&places[place].addressAndRule, address ^ rule.bits, memory_order_relaxed);
    }
    return rule;
}

// ---- Walking up a stack

static uint64_t readStack(uintptr_t address) {
    uint64_t word = 0;
    memcpy(&word, (const void*)address, sizeof word);
    return word;
}

// The end of the stack that this address is on; 0 if it is neither the first thread's nor one that glibc
// made, which has a thread's own data at its end.
static uintptr_t endOfStack(uintptr_t address) {
    const uintptr_t most = (uintptr_t)1 << 26;
    const uintptr_t ends[] = {(uintptr_t)__libc_stack_end, (uintptr_t)__builtin_thread_pointer()};
    for (size_t i = 0; i < sizeof ends / sizeof *ends; ++i) {
        if (address < ends[i] && ends[i] - address < most)
            return ends[i];
    }
    return 0;
}

// How many there are; -1 if only libgcc can tell.
static int findCallers(uintptr_t address, uintptr_t rsp, uintptr_t rbp, uintptr_t* callers) {
    const uintptr_t top = endOfStack(rsp);
    int count = 0;
    while (count < kMostCallers && address != 0) {
        callers[count++] = address;
        const Rule rule = ruleFor(address);
        if (rule.frameKind == kOutermost)
            break;
        if (rule.frameKind == kUnknown)
            return -1;
        uintptr_t end = (rule.frameKind == kFromRsp ? rsp : rbp) + (uintptr_t)(intptr_t)rule.end;
        if (rule.frameKind == kAtRbp) {
            if (end < rsp || end > top - kWord)
                return -1;
            end = readStack(end);
        }
        const uintptr_t saved = (rule.rbpKind == kSavedFromRbp ? rbp : end) + (uintptr_t)(intptr_t)rule.rbp;
        if (end <= rsp || end > top || (rule.rbpKind != kUnchanged && (saved < rsp || saved > top - kWord)))
            return -1;
        if (rule.rbpKind != kUnchanged)
            rbp = readStack(saved);
        rsp = end;
        address = readStack(end - kWord);
    }
    return count;
}

// ---- What the sanitizer calls

// What a visitor gets for libgcc's context, whose first field never is the address of this mark.
typedef struct {
    const void* mark;
    uintptr_t address;
} Caller;

static const char mark;

int _Unwind_Backtrace(VisitCaller visit, void* argument) {
    const uintptr_t frame = (uintptr_t)__builtin_frame_address(0);
    uintptr_t callers[kMostCallers];
    const int count = findCallers(readStack(frame + kWord), frame + 2 * kWord, readStack(frame), callers);
    if (count < 0) {
        static int (*original)(VisitCaller, void*);
        if (original == NULL)
            *(void**)&original = dlsym(RTLD_NEXT, "_Unwind_Backtrace");
        return original(visit, argument);
    }
    for (int i = 0; i < count; ++i) {
        Caller caller = {&mark, callers[i]};
        if (visit(&caller, argument) != 0)
            break;
    }
    return kEndOfStack;
}

uintptr_t _Unwind_GetIP(void* context) {
    const Caller* caller = context;
    if (caller->mark == &mark)
        return caller->address;
    static uintptr_t (*original)(void*);
    if (original == NULL)
        *(void**)&original = dlsym(RTLD_NEXT, "_Unwind_GetIP");
    return original(context);
}
