// Registration of the benchmark families, in the order they run.
#pragma once

// Per shape, smallest first: Memory/<shape>, Floor/Expat/<shape>, Floor/OrvXmlParser/<shape>,
// Initialize/<shape>/Server and Initialize/<shape>/Library (startup_benchmarks.cc).
void RegisterStartupBenchmarks();

// The hot queries on the loaded M and L configurations, each from one thread and from two:
// Query/<query>/<shape>[/threads:2] (query_benchmarks.cc).
void RegisterQueryBenchmarks();

// Costs that must grow linearly, one dimension doubled at a time: Scaling/Drivers/<N> and
// Scaling/Token/<kind>/<MiB> (scaling_benchmarks.cc).
void RegisterScalingBenchmarks();
