// SPDX-License-Identifier: MIT
#include "ProbeInterface.h"

DEFINE_LOG_CATEGORY_STATIC(LogProbe, Log, All)

namespace
{
/// Writes a log line at each step of its life.
class FProbe : public IProbe
{
public:
	~FProbe() override { HOST_LOG(LogProbe, Log, TEXT("Probe destroyed")); }

	void StartupModule() override
	{
		FModuleManager& Manager = FModuleManager::Get();
		const bool bKnown = Manager.IsModuleLoaded(TEXT("Probe")) && Manager.GetModule(TEXT("Probe")) == this;
		HOST_LOG(LogProbe, Log, TEXT("Probe starts, %s"), bKnown ? TEXT("known") : TEXT("unknown"));
		// Asking for itself, or to be unloaded, in the middle of the start must do no harm.
		const bool bSame = Manager.LoadModule(TEXT("Probe")) == this;
		const bool bUnloaded = Manager.UnloadModule(TEXT("Probe"));
		HOST_LOG(LogProbe, Log, TEXT("Probe %s itself"), bSame && !bUnloaded ? TEXT("keeps") : TEXT("loses"));
	}
	void PostLoadCallback() override { HOST_LOG(LogProbe, Log, TEXT("Probe loaded")); }
	void PreUnloadCallback() override { HOST_LOG(LogProbe, Log, TEXT("Probe will be unloaded")); }
	void ShutdownModule() override
	{
		HOST_LOG(LogProbe, Log, TEXT("Probe stops"));
		if (JoinedEvent != nullptr)
		{
			JoinedEvent->Remove(JoinHandle);
		}
	}

	int32 CountCall() override
	{
		static int32 NumCalls = 0;
		return ++NumCalls;
	}
	FName MakeName() const override { return TEXT("A name from the library"); }
	FText MakeText() const override
	{
		return FText::Format(
			NSLOCTEXT("Probe", "Count", "{0} of {1}"), FText::FromString(TEXT("a literal")), FText::AsNumber(1234));
	}
	void Join(FSimpleMulticastDelegate& Event, int32& NumCalls) override
	{
		JoinedEvent = &Event;
		JoinHandle = Event.AddLambda([&NumCalls] { ++NumCalls; });
	}

private:
	FSimpleMulticastDelegate* JoinedEvent = nullptr;
	FDelegateHandle JoinHandle;
};
} // namespace

IMPLEMENT_MODULE(FProbe, Probe)
