/**
 * Solving beside the page: a worker with progress and `AbortSignal`. A solve that is aborted goes
 * with its worker; the next one starts a new worker.
 */
import { NuvError, type Diagnostic } from "./error.js";
import type { Answer, Progress, SolveOptions } from "./answer.js";
import type { ModelObject } from "./object.js";
import type { Repair, RepairOptions } from "./repair.js";

export type { Answer, Progress, Repair };

/** A worker of a browser's, or of node's `worker_threads`. */
export interface AnyWorker {
  postMessage(message: unknown): void;
  terminate(): unknown;
  addEventListener?(type: string, listen: (event: { data?: unknown; message?: string }) => void): void;
  on?(type: string, listen: (data: unknown) => void): unknown;
}

export interface Watching {
  signal?: AbortSignal;
  /** Told now and then. */
  onProgress?: (progress: Progress) => void;
}

/** @internal What goes to the worker. */
export interface Request {
  id: number;
  call: "solve" | "repair";
  model: ModelObject | string;
  options: object;
  relax: boolean;
}

/** @internal What comes back. */
export type Reply =
  | { id: number; progress: Progress }
  | { id: number; answer: unknown }
  | { id: number; error: { code: string; message: string; diagnostics: readonly Diagnostic[] } };

interface Job {
  request: Request;
  watching: Watching;
  resolve: (answer: unknown) => void;
  reject: (error: unknown) => void;
  forget: () => void;
}

export class WorkerSolver {
  readonly #make: () => AnyWorker | Promise<AnyWorker>;
  #worker: Promise<AnyWorker> | undefined;
  #jobs: Job[] = [];
  #count = 0;

  /** `make` starts a worker that runs worker-entry.js; the default works in browsers and in node. */
  constructor(make: () => AnyWorker | Promise<AnyWorker> = startWorker) {
    this.#make = make;
  }

  solve(
    model: ModelObject | string,
    options: Omit<SolveOptions, "progress"> & Watching & { relax?: boolean } = {},
  ): Promise<Answer> {
    return this.#add("solve", model, options) as Promise<Answer>;
  }

  repair(
    model: ModelObject | string,
    options: Omit<RepairOptions, "progress"> & Watching & { relax?: boolean } = {},
  ): Promise<Repair> {
    return this.#add("repair", model, options) as Promise<Repair>;
  }

  /** Ends the worker and all that waits for it. */
  dispose(): void {
    this.#stop();
    const error = new NuvError({ code: "js.disposed", message: "the worker was disposed of" });
    for (const job of this.#jobs.splice(0)) job.reject(error);
  }

  [Symbol.dispose](): void {
    this.dispose();
  }

  #add(call: Request["call"], model: ModelObject | string, given: Watching & { relax?: boolean }): Promise<unknown> {
    const { signal, onProgress, relax = false, ...options } = given;
    return new Promise((resolve, reject) => {
      if (signal?.aborted) return reject(signal.reason);
      const request = { id: ++this.#count, call, model, options, relax };
      const watching: Watching = onProgress ? { onProgress } : {};
      const abort = () => this.#abort(job, signal!.reason);
      const forget = () => signal?.removeEventListener("abort", abort);
      const job: Job = { request, watching, resolve, reject, forget };
      signal?.addEventListener("abort", abort);
      this.#jobs.push(job);
      if (this.#jobs.length === 1) this.#start();
    });
  }

  /** The first job goes to the worker. */
  #start(): void {
    const job = this.#jobs[0];
    if (!job) return;
    this.#worker ??= Promise.resolve(this.#make()).then((worker) => {
      const listen = (data: unknown) => this.#take(data as Reply);
      if (worker.on) worker.on("message", listen);
      else worker.addEventListener!("message", ({ data }) => listen(data));
      const fail = (message: string) => this.#end(new NuvError({ code: "js.worker", message }), undefined);
      if (worker.on) worker.on("error", (error) => fail(String(error)));
      else worker.addEventListener!("error", ({ message }) => fail(message ?? "the worker cannot start"));
      return worker;
    });
    this.#worker.then(
      (worker) => {
        if (this.#jobs[0] === job) worker.postMessage(job.request);
      },
      (error: unknown) => this.#end(error, undefined),
    );
  }

  #take(reply: Reply): void {
    const job = this.#jobs[0];
    if (job?.request.id !== reply.id) return;
    if ("progress" in reply) job.watching.onProgress?.(reply.progress);
    else if ("answer" in reply) this.#end(undefined, reply.answer);
    else this.#end(new NuvError(reply.error.diagnostics[0] ?? reply.error, reply.error.diagnostics), undefined);
  }

  #end(error: unknown, answer: unknown): void {
    const job = this.#jobs.shift();
    job?.forget();
    if (error === undefined) job?.resolve(answer);
    else job?.reject(error);
    this.#start();
  }

  #abort(job: Job, reason: unknown): void {
    if (this.#jobs[0] === job) {
      this.#stop();
      this.#end(reason, undefined);
      return;
    }
    this.#jobs = this.#jobs.filter((other) => other !== job);
    job.forget();
    job.reject(reason);
  }

  #stop(): void {
    void this.#worker?.then((worker) => worker.terminate());
    this.#worker = undefined;
  }
}

async function startWorker(): Promise<AnyWorker> {
  const entry = new URL("./worker-entry.js", import.meta.url);
  if (typeof Worker !== "undefined") return new Worker(entry, { type: "module" });
  const threads = ["node:worker", "threads"].join("_");
  const { Worker: NodeWorker } = (await import(threads)) as { Worker: new (url: URL) => AnyWorker };
  return new NodeWorker(entry);
}
