#pragma once

#include <windows.h>

#include <array>
#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

// Stand-ins for what a machine cannot be brought to do. A hook replaces one function of the system for all
// calls that the program makes, by its import table: it counts the calls, makes the n-th fail, answers in the
// system's place, or acts between two calls. The C++ and thread libraries are linked into the program, so
// that their calls are seen with ours; what the system calls by itself is not.
//
//     auto writes = API_HOOK(WriteFile);
//     writes.FailAt(3, ERROR_DISK_FULL);                              // the third returns FALSE
//     auto creates = API_HOOK(CreateFileA);
//     creates.FailAlways(ERROR_SHARING_VIOLATION, INVALID_HANDLE_VALUE);
//     auto attributes = API_HOOK(GetFileAttributesA);
//     attributes.Replace([&](LPCSTR path) { return attributes.Real()(path) | FILE_ATTRIBUTE_COMPRESSED; });
//     auto wow64 = LATE_BOUND_HOOK(IsWow64Process);                   // one that the code looks up by name
//     wow64.Replace([](HANDLE, BOOL* answer) { *answer = TRUE; return TRUE; });
//     MissingEntryPoint older("RegDeleteKeyExA");                     // the look-up finds nothing
//
// A hook lasts as long as its object. Hooks of the same function nest, the last one made sees the calls
// first. Calls may come from any thread; set a hook up before the worker starts or from within a hooked call.
// Calls that a replacement or a script makes itself go past the hook and are not counted. A function that the
// program does not import throws, for the hook would do nothing.
#define API_HOOK(function) ApiHook<decltype(&::function)>(#function)
#define LATE_BOUND_HOOK(function) ApiHook<decltype(&::function)>(LateBound{#function})

// A function that is looked up by GetProcAddress instead of being imported.
struct LateBound {
    const char* name;
};

namespace api_hook {

// The places of the import table through which a loaded program calls the function, from whatever DLL.
std::vector<void**> FindImports(HMODULE program, const char* name);

// Points the program's imports of a function elsewhere, for as long as it lives. Throws std::runtime_error if
// there is none.
class ImportPatch {
  public:
    ImportPatch(const char* name, void* replacement);
    ~ImportPatch();
    ImportPatch(const ImportPatch&) = delete;
    ImportPatch& operator=(const ImportPatch&) = delete;
    void* Original() const { return m_entries.front().second; }

  private:
    std::vector<std::pair<void**, void*>> m_entries;  // each place with what was in it
};

// Makes GetProcAddress answer `replacement` for a name, of whatever module.
class LateBoundPatch {
  public:
    LateBoundPatch(const char* name, void* replacement);
    ~LateBoundPatch();
    LateBoundPatch(const LateBoundPatch&) = delete;
    LateBoundPatch& operator=(const LateBoundPatch&) = delete;
    // What was answered before; null if no loaded module has it.
    void* Original() const { return m_original; }

  private:
    std::string m_name;
    void* m_original;
};

// A lock that leaves the last error alone and can be taken within a hooked call.
class Lock {
  public:
    Lock();
    ~Lock();
    Lock(const Lock&) = delete;
    Lock& operator=(const Lock&) = delete;

  private:
    DWORD m_lastError;
};

// Keeps the last error that the answer left from what happens after it.
struct KeptLastError {
    DWORD value = ::GetLastError();
    KeptLastError() = default;
    KeptLastError(const KeptLastError&) = delete;
    KeptLastError& operator=(const KeptLastError&) = delete;
    ~KeptLastError() { ::SetLastError(value); }
};
struct ReadLastError {
    KeptLastError& kept;
    ~ReadLastError() { kept.value = ::GetLastError(); }
};

template <class Function>
struct Traits;
template <class R, class... Arguments>
struct Traits<R(WINAPI*)(Arguments...)> {
    using Result = R;
    using Call = std::function<R(Arguments...)>;
    template <class Hook, std::size_t slot>
    static R WINAPI Thunk(Arguments... arguments) {
        return Hook::Dispatch(slot, arguments...);
    }
};
#ifndef _WIN64  // there the two conventions are one
template <class R, class... Arguments>
struct Traits<R(__cdecl*)(Arguments...)> {
    using Result = R;
    using Call = std::function<R(Arguments...)>;
    template <class Hook, std::size_t slot>
    static R __cdecl Thunk(Arguments... arguments) {
        return Hook::Dispatch(slot, arguments...);
    }
};
#endif

}  // namespace api_hook

template <class Function>
class ApiHook {
    using Traits = api_hook::Traits<Function>;

  public:
    using Result = typename Traits::Result;
    using Call = typename Traits::Call;

    explicit ApiHook(const char* name) : m_slot(TakeSlot()) {
        try {
            m_import = std::make_unique<api_hook::ImportPatch>(name, ThunkOf(m_slot));
            SetReal(m_import->Original());
        } catch (...) {
            GiveBackSlot();
            throw;
        }
    }
    explicit ApiHook(LateBound entry) : m_slot(TakeSlot()) {
        m_lateBound = std::make_unique<api_hook::LateBoundPatch>(entry.name, ThunkOf(m_slot));
        SetReal(m_lateBound->Original());
    }
    ~ApiHook() {
        m_import.reset();
        m_lateBound.reset();
        GiveBackSlot();
    }
    ApiHook(const ApiHook&) = delete;
    ApiHook& operator=(const ApiHook&) = delete;

    // The number of calls so far, the one that goes on included.
    int Calls() const {
        const api_hook::Lock lock;
        return m_state->calls;
    }

    // The function itself, past this hook.
    Function Real() const { return m_state->real; }

    // Answers every call that nothing else is said for.
    void Replace(Call call) {
        const api_hook::Lock lock;
        m_state->answer = std::move(call);
    }
    // Answers the n-th call, counted from 1.
    void ReplaceAt(int n, Call call) {
        const api_hook::Lock lock;
        m_state->answers[n] = std::move(call);
    }
    // The n-th call, or all of them, does nothing but to fail.
    template <class Value = Result>
    void FailAt(int n, DWORD lastError, Value result = Value()) {
        ReplaceAt(n, Failure(lastError, result));
    }
    template <class Value = Result>
    void FailAlways(DWORD lastError, Value result = Value()) {
        Replace(Failure(lastError, result));
    }
    // Runs just before the n-th call, on its thread.
    void Before(int n, std::function<void()> script) {
        const api_hook::Lock lock;
        m_state->scripts[n] = std::move(script);
    }

  private:
    friend Traits;

    // What a call needs of the hook. Shared with the calls that go on while the hook is taken away.
    struct State {
        Function real = nullptr;
        int calls = 0;
        Call answer;
        std::map<int, Call> answers;
        std::map<int, std::function<void()>> scripts;
        std::vector<DWORD> inside;  // the threads that are in a replacement or a script
    };
    struct Slot {
        bool taken = false;
        std::shared_ptr<State> state;
    };
    // So many hooks of functions of one type at the same time.
    static constexpr std::size_t kSlots = 8;
    static inline std::array<Slot, kSlots> s_slots;

    struct InsideMark {
        State& state;
        explicit InsideMark(State& marked) : state(marked) {
            const api_hook::Lock lock;
            state.inside.push_back(::GetCurrentThreadId());
        }
        InsideMark(const InsideMark&) = delete;
        InsideMark& operator=(const InsideMark&) = delete;
        ~InsideMark() {
            const api_hook::Lock lock;
            std::erase(state.inside, ::GetCurrentThreadId());
        }
    };

    template <class Value>
    static Call Failure(DWORD lastError, Value result) {
        return [lastError, result](auto...) -> Result {
            ::SetLastError(lastError);
            return result;
        };
    }

    static std::size_t TakeSlot() {
        const api_hook::Lock lock;
        for (std::size_t slot = 0; slot < kSlots; ++slot) {
            if (s_slots[slot].taken) continue;
            s_slots[slot] = {true, std::make_shared<State>()};
            return slot;
        }
        throw std::runtime_error("too many hooks of functions of one type");
    }
    // The state stays: a thread may have read the import just before it was restored.
    void GiveBackSlot() {
        const api_hook::Lock lock;
        m_state->answer = nullptr;
        m_state->answers.clear();
        m_state->scripts.clear();
        s_slots[m_slot].taken = false;
    }
    void SetReal(void* function) { m_state->real = reinterpret_cast<Function>(function); }

    static void* ThunkOf(std::size_t slot) { return ThunkOf(slot, std::make_index_sequence<kSlots>()); }
    template <std::size_t... slots>
    static void* ThunkOf(std::size_t slot, std::index_sequence<slots...>) {
        const Function thunks[] = {&Traits::template Thunk<ApiHook, slots>...};
        return reinterpret_cast<void*>(thunks[slot]);
    }

    template <class... Arguments>
    static Result Dispatch(std::size_t slot, Arguments... arguments) {
        api_hook::KeptLastError lastError;
        std::shared_ptr<State> state;
        Call answer;
        std::function<void()> script;
        {
            const api_hook::Lock lock;
            state = s_slots[slot].state;
            bool inside = false;
            for (const DWORD thread : state->inside) inside = inside || thread == ::GetCurrentThreadId();
            if (!inside) {
                const int n = ++state->calls;
                if (const auto found = state->scripts.find(n); found != state->scripts.end())
                    script = found->second;
                const auto found = state->answers.find(n);
                answer = found != state->answers.end() ? found->second : state->answer;
            }
        }
        if (script) {
            const InsideMark mark(*state);
            script();
        }
        if (!answer) {
            ::SetLastError(lastError.value);
            const api_hook::ReadLastError read{lastError};
            return state->real(arguments...);
        }
        const InsideMark mark(*state);
        ::SetLastError(lastError.value);
        const api_hook::ReadLastError read{lastError};
        return answer(arguments...);
    }

    std::size_t m_slot;
    std::shared_ptr<State> m_state = s_slots[m_slot].state;
    std::unique_ptr<api_hook::ImportPatch> m_import;
    std::unique_ptr<api_hook::LateBoundPatch> m_lateBound;
};

// Makes a look-up by name find nothing, as on a system that lacks the function.
class MissingEntryPoint {
  public:
    explicit MissingEntryPoint(const char* name) : m_patch(name, nullptr) {}

  private:
    api_hook::LateBoundPatch m_patch;
};
