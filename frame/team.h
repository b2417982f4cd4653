// Teams of threads. A build without OpenMP has the same functions on the calling thread, as a team of one; nothing else
// in the library differs between the two.
#pragma once

#ifdef _OPENMP
#include <omp.h>

#include "zimcore.h"
#endif

namespace zim {

#ifdef _OPENMP

// Number of the calling thread in its team.
inline int threadNumber() { return omp_get_thread_num(); }

// What the runtime would use for the calling thread.
inline int usualTeamSize() { return omp_get_max_threads(); }

// What a call asks for.
inline int wantedTeamSize() { return ownGetNumThreads(); }

// Runs task(thread, team size) on each thread of a team of the asked size; the runtime may grant fewer.
template <class Task>
void inTeam(int teamSize, const Task& task) {
#pragma omp parallel num_threads(teamSize)
  task(threadNumber(), omp_get_num_threads());
}

// Runs task(0) to task(count - 1), in one contiguous block a thread.
template <class Task>
void shareOut(int count, int teamSize, const Task& task) {
#pragma omp parallel for schedule(static) num_threads(teamSize)
  for (int i = 0; i < count; ++i) task(i);
}

#else

inline int threadNumber() { return 0; }
inline int usualTeamSize() { return 1; }
inline int wantedTeamSize() { return 1; }

template <class Task>
void inTeam(int, const Task& task) {
  task(0, 1);
}

template <class Task>
void shareOut(int count, int, const Task& task) {
  for (int i = 0; i < count; ++i) task(i);
}

#endif

}  // namespace zim
